#pragma once

#include <QApplication>
#include <QDataWidgetMapper>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlTableModel>

#include <sqlite3.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace zv::bench {

/// Baseline for a dialog that changes a row: a QLineEdit on QSqlTableModel by QDataWidgetMapper, as in Qt's
/// own examples, on a connection of its own to the same file.
class QtEdit {
public:
    QtEdit(const std::string& file, const std::string& settings)
        : database_(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QString::fromStdString(file)))
    {
        database_.setDatabaseName(QString::fromStdString(file));
        if (!database_.open())
            fail(database_.lastError());
        for (const QString& setting :
             QString::fromStdString(settings).split(QLatin1Char(';'), Qt::SkipEmptyParts))
            QSqlQuery(database_).exec(setting);
    }
    QtEdit(const QtEdit&) = delete;
    QtEdit& operator=(const QtEdit&) = delete;
    ~QtEdit()
    {
        parts_.reset();
        const QString name = database_.connectionName();
        database_ = {};
        QSqlDatabase::removeDatabase(name);
    }

    /// Creates box, model and mapper, and loads the row.
    void open()
    {
        parts_ = std::make_unique<Parts>(database_);
        parts_->model.setTable(QStringLiteral("EstadoCivil"));
        parts_->model.setEditStrategy(QSqlTableModel::OnManualSubmit);
        parts_->model.setFilter(QStringLiteral("IDEstadoCivil=1"));
        if (!parts_->model.select())
            fail(parts_->model.lastError());
        parts_->mapper.setSubmitPolicy(QDataWidgetMapper::ManualSubmit);
        parts_->mapper.setModel(&parts_->model);
        parts_->mapper.addMapping(&parts_->box, parts_->model.fieldIndex(QStringLiteral("Descripcion")));
    }
    /// Types a new text, and submits.
    void change(const QString& text)
    {
        parts_->mapper.toFirst();
        parts_->box.selectAll();
        for (const QChar each : text) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(each));
            QCoreApplication::sendEvent(&parts_->box, &press);
        }
        if (!parts_->mapper.submit() || !parts_->model.submitAll())
            fail(parts_->model.lastError());
        // Proof of the change: the model has re-read the row.
        if (parts_->model.record(0).value(QStringLiteral("Descripcion")) != text)
            throw std::runtime_error("the text did not reach the row");
    }
    /// Traces the statements that the database gets in that call.
    template <class Call>
    std::vector<std::string> recorded(Call&& call)
    {
        std::vector<std::string> statements;
        sqlite3* handle = *static_cast<sqlite3* const*>(database_.driver()->handle().constData());
        const auto keep = [](unsigned, void* kept, void* statement, void*) {
            const std::unique_ptr<char, void (*)(void*)> text(
                sqlite3_expanded_sql(static_cast<sqlite3_stmt*>(statement)), sqlite3_free);
            static_cast<std::vector<std::string>*>(kept)->emplace_back(text.get());
            return 0;
        };
        sqlite3_trace_v2(handle, SQLITE_TRACE_STMT, keep, &statements);
        call();
        sqlite3_trace_v2(handle, 0, nullptr, nullptr);
        return statements;
    }

private:
    struct Parts {
        explicit Parts(const QSqlDatabase& database) : model(nullptr, database) {}
        QLineEdit box;
        QSqlTableModel model;
        QDataWidgetMapper mapper;
    };
    [[noreturn]] static void fail(const QSqlError& error)
    {
        throw std::runtime_error(error.text().toStdString());
    }

    QSqlDatabase database_;
    std::unique_ptr<Parts> parts_;
};

} // namespace zv::bench
