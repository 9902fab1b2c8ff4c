#pragma once

#include "data/DataError.h"
#include "data/Engine.h"

#include "data/NumberOf.h"

namespace zv {

/// An engine and a fresh, empty database of it.
class OneDatabase : public testing::Test {
protected:
    OneDatabase(std::unique_ptr<Engine> ofKind, StringView location)
        : engine(std::move(ofKind)), base(engine->temporary(location, Database::centro))
    {}
    /// The first column of the rows, a blank behind each.
    String all(StringView statement) const
    {
        String result;
        for (const RecordsetPtr rows = base->Execute(statement); !rows->Eof(); rows->MoveNext())
            result += CStr(rows->row().front()) + u" ";
        return result;
    }
    struct Case {
        StringView statement;
        std::int32_t number;
    };
    void expectNumbers(std::initializer_list<Case> cases) const
    {
        for (const Case& each : cases)
            EXPECT_EQ(numberOf([&] { base->Execute(each.statement); }), each.number)
                << toUtf8(each.statement);
    }
    /// What goes wrong with a table T of a key, something else unique and a number below 10, whose first row
    /// is (1,'a',-2): on every engine the same.
    void expectTheCommonNumbers() const
    {
        base->Execute(u"Insert into T values (1,'a',-2)");
        expectNumbers({
            Case{u"Insert into t values (1,'b',3)", failure::keyExists},
            Case{u"Insert into t values (2,'a',3)", failure::brokenConstraint},
            Case{u"Insert into t values (2,'b',10)", failure::brokenConstraint},
            Case{u"Insert into t values ('x','b',3)", failure::brokenConstraint},
            Case{u"Select * from nada", failure::tableMissing},
            Case{u"Select nada from t", failure::columnMissing},
            Case{u"Selec * from t", failure::badStatement},
            Case{u"Insert into t values (7,'7',7); Select 1", failure::badStatement},
        });
    }
    /// A table as a school may have it: what no two rows may have alike is the key, and something else
    /// besides.
    void expectTheKeyAloneIsTaken() const
    {
        base->Execute(
            u"CREATE TABLE Pais (Descripcion VARCHAR(50) PRIMARY KEY, Sigla VARCHAR(9), IDPais INTEGER)");
        base->Execute(u"CREATE UNIQUE INDEX \"su 'clave', \"\"única\"\"\" ON Pais (IDPais)");
        base->Execute(u"CREATE UNIQUE INDEX \"«sigla» d'un\" ON Pais (Sigla)");
        base->Execute(u"Insert into Pais values ('Perú','clave',1)");
        expectNumbers({
            Case{u"Insert into Pais values ('Chile','C',1)", failure::keyExists},
            Case{u"INSERT INTO pais (IDPais,Descripcion) VALUES (1,'Chile')", failure::keyExists},
            Case{u"Insert into Pais values ('Chile','clave',2)", failure::brokenConstraint},
            Case{u"Insert into Pais values ('Perú','C',2)", failure::brokenConstraint},
            Case{u"Insert into Pais values ('Chile','C',2)", 0},
            Case{u"Update Pais Set Sigla='clave' Where IDPais=2", failure::brokenConstraint},
        });
    }
    /// Tables and views with their columns in order, in an empty schema of a server, and nothing else of it.
    void expectTablesAreFound() const
    {
        for (const StringView each :
             {u"CREATE TABLE \"Una Tabla\" (b INTEGER, \"Ñ\" INTEGER, c INTEGER, a VARCHAR(9))",
              u"CREATE INDEX indice ON \"Una Tabla\" (b)", u"ALTER TABLE \"Una Tabla\" DROP COLUMN c",
              u"CREATE SEQUENCE secuencia", u"CREATE VIEW vista AS SELECT a, b FROM \"Una Tabla\""})
            base->executeNative(each);
        String found;
        for (const FoundTable& table : engine->tables(*base)) {
            found += table.name + u":";
            for (const String& column : table.columns)
                found += u" " + column;
            found += u"\n";
        }
        EXPECT_EQ(found, u"Una Tabla: b Ñ a\nvista: a b\n");
    }

    std::unique_ptr<Engine> engine;
    ConnectionPtr base;
};

} // namespace zv
