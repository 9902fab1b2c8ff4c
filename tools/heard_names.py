"""What the controls of the dialogs are called to those who hear them."""

# Of each window its controls by the names that are heard. What a name begins with tells the role.
ROLES = {"txt": "text", "cmd": "push button", "cbo": "combo box", "msg": "table", "mst": "page tab list",
         "Tab": "page tab list", "lbl": "label"}
SECTION = {"cboTipoEnsenanza": "(*) Tipo de enseñanza", "cboCursos": "(*) Curso", "cboSecciones": "(*) Sección",
           "cmdNotaManual1(0)": "Siguiente >", "cmdNotaManual1(1)": "Salir"}
REPORT = {"cboAlumno": "Alumno", "cmdAnterior": "Anterior", "cmdSiguiente": "Siguiente", "TabInfInd": "*",
          "txtDificultad": "Dificultades de asimilación en las distintas áreas",
          "txtValoracion": "Valoración del aprendizaje y promoción", "txtAplicacion": "Aplicación de medidas educativas",
          "cmdNotaManual1(0)": "Aceptar", "cmdNotaManual1(1)": "Cancelar"}
NAMES = {
    "frmIdioma": {"txtIdioma": "Idioma", "cmdIdioma(0)": "Aceptar", "cmdIdioma(1)": "Cancelar"},
    "frmEstadoCivil": {"lblPais": "Estado Civil:", "txtIdioma": "Estado Civil", "cmdIdioma(0)": "Aceptar",
                       "cmdIdioma(1)": "Cancelar|Salir"},
    "frmBanco": {"txtBanco(0)": "Código", "txtBanco(1)": "Nombre", "mstBanco": "*", "msgBanco": "Sucursales",
                 "cmdBotonera(0)": "Aceptar", "cmdBotonera(1)": "Cancelar", "cmdBotonera(2)": "Agregar",
                 "cmdBotonera(3)": "Modificar", "cmdBotonera(4)": "Eliminar"},
    "frmSucursal": {"txtSucursal(0)": "Nombre", "txtSucursal(1)": "Dirección", "txtSucursal(2)": "Código",
                    "txtSucursal(3)": "Código Postal", "txtSucursal(4)": "Población", "cboSucursal": "Provincia",
                    "cmdSucursal(0)": "Aceptar", "cmdSucursal(1)": "Cancelar"},
    "frmPresentador": {"txtNombre": "Nombre", "txtNIF": "NIF-CIF", "txtSufijo": "Sufijo", "txtNEntidad": "Nº Entidad",
                       "cboBancos": "Entidad", "cboSucursales": "Sucursal", "cmdNuevoBanco(0)": "Añadir un banco",
                       "cmdAceptar": "Aceptar"},
    "frmInformeIndividual": SECTION,
    "frmInfIndESO": REPORT | {
        "txtCognitiva": "Cognitivas-Intelectuales", "txtEquilibrio": "Equilibrio Personal",
        "txtInsercion": "Inserción Social", "txtMotrices": "Motrices", "txtRelacion": "Relación Interpersonal"}
    | {f"txtProc1({n})": f"Utilización de Procedimientos, {n + 1}" for n in range(5)}
    | {f"txtActitud({n})": f"Nuevas Actitudes, {n + 1}" for n in range(2)},
    "frmInfIndPrim": REPORT | {"msgValores": "*", "cboValor": "Lengua"},
}
# Of nodes that are opened from the main window: the list's name, and how a row's is found.
NODES = {"52": ("Idiomas", "SELECT Descripcion FROM Idioma WHERE IDIdioma=?")}
