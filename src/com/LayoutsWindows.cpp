// The binary types of our headers beside the system's own: hosts hand the ones in the place of the others, so
// they have to be the same, byte by byte, on 32 and on 64 bits.
#include "com/Objects.h"

#include <cstddef>
#include <zvconfiguracion/zvconfiguracion.h>

#include <oaidl.h>
#include <unknwn.h>

namespace zv::com {
namespace {

constexpr bool sameTypes(int ours, int theirs) { return ours == theirs; }

static_assert(sizeof(ZvGuid) == sizeof(GUID) && sizeof(ZvResult) == sizeof(HRESULT));
static_assert(sizeof(ZvBool) == sizeof(VARIANT_BOOL) && sizeof(ZvBstr) == sizeof(BSTR) &&
              sizeof(*ZvBstr()) == sizeof(OLECHAR));

static_assert(sizeof(ZvVariant) == sizeof(VARIANT) && alignof(ZvVariant) == alignof(VARIANT));
static_assert(offsetof(ZvVariant, vt) == offsetof(VARIANT, vt) &&
              offsetof(ZvVariant, value) == offsetof(VARIANT, llVal));
static_assert(sameTypes(ZV_VT_BSTR, VT_BSTR) && sameTypes(ZV_VT_DISPATCH, VT_DISPATCH) &&
              sameTypes(ZV_VT_BOOL, VT_BOOL) && sameTypes(ZV_VT_ERROR, VT_ERROR) &&
              sameTypes(ZV_VT_VARIANT, VT_VARIANT) && sameTypes(ZV_VT_DECIMAL, VT_DECIMAL) &&
              sameTypes(ZV_VT_CY, VT_CY) && sameTypes(ZV_VT_DATE, VT_DATE) &&
              sameTypes(ZV_VT_ARRAY, VT_ARRAY) && sameTypes(ZV_VT_BYREF, VT_BYREF));

static_assert(sizeof(ZvArrayBound) == sizeof(SAFEARRAYBOUND) &&
              offsetof(ZvArrayBound, first) == offsetof(SAFEARRAYBOUND, lLbound));
static_assert(sizeof(ZvArray) == sizeof(SAFEARRAY) &&
              offsetof(ZvArray, features) == offsetof(SAFEARRAY, fFeatures) &&
              offsetof(ZvArray, elementSize) == offsetof(SAFEARRAY, cbElements) &&
              offsetof(ZvArray, locks) == offsetof(SAFEARRAY, cLocks) &&
              offsetof(ZvArray, data) == offsetof(SAFEARRAY, pvData) &&
              offsetof(ZvArray, bounds) == offsetof(SAFEARRAY, rgsabound));

static_assert(sizeof(ZvParams) == sizeof(DISPPARAMS) &&
              offsetof(ZvParams, names) == offsetof(DISPPARAMS, rgdispidNamedArgs) &&
              offsetof(ZvParams, count) == offsetof(DISPPARAMS, cArgs) &&
              offsetof(ZvParams, nameCount) == offsetof(DISPPARAMS, cNamedArgs));
static_assert(sizeof(ZvException) == sizeof(EXCEPINFO) &&
              offsetof(ZvException, source) == offsetof(EXCEPINFO, bstrSource) &&
              offsetof(ZvException, description) == offsetof(EXCEPINFO, bstrDescription) &&
              offsetof(ZvException, helpFile) == offsetof(EXCEPINFO, bstrHelpFile) &&
              offsetof(ZvException, helpContext) == offsetof(EXCEPINFO, dwHelpContext) &&
              offsetof(ZvException, fill) == offsetof(EXCEPINFO, pfnDeferredFillIn) &&
              offsetof(ZvException, result) == offsetof(EXCEPINFO, scode));

// Tables: where a function stands is what a caller knows it by.
static_assert(sizeof(ZvUnknownVtbl) == 3 * sizeof(void*) && sizeof(ZvDispatchVtbl) == 7 * sizeof(void*) &&
              sizeof(ZvClassFactoryVtbl) == 5 * sizeof(void*));
static_assert(offsetof(ZvDispatchVtbl, GetIDsOfNames) == 5 * sizeof(void*) &&
              offsetof(ZvDispatchVtbl, Invoke) == 6 * sizeof(void*));
static_assert(offsetof(Zv_cAsignarDatosVtbl, BloquearBanco) == 7 * sizeof(void*) &&
              sizeof(Zv_cAsignarDatosVtbl) == 11 * sizeof(void*));

} // namespace
} // namespace zv::com
