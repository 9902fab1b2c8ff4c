#pragma once

namespace zv::com {

/// From here on CreateObject makes the suite's own helpers (ZVApi.cCentroApi, ZEncryptoAPI.cZEncryptoAPI)
/// where they are registered on this machine, and ours where they are not. It looks each time. One that is
/// registered and cannot be made is a failure with 429: another cipher must not take the place of the suite's
/// unseen. Only on Windows is there anything to look at.
void preferMachineClasses();

} // namespace zv::com
