#pragma once

#include <QCommandLineParser>

#include <limits>
#include <stdexcept>

namespace zv::host {

/// Command-line parser of one command; a line that cannot be understood throws.
class Words {
public:
    Words(const QStringList& words, const QList<QCommandLineOption>& options)
    {
        parser_.addOptions(options);
        if (!parser_.parse(QStringList(QStringLiteral("zvhost")) + words))
            throw std::invalid_argument(parser_.errorText().toStdString());
    }
    bool has(const QString& name) const { return parser_.isSet(name); }
    QString text(const QString& name) const { return parser_.value(name); }
    QStringList texts(const QString& name) const { return parser_.values(name); }
    QStringList rest() const { return parser_.positionalArguments(); }
    template <class Number>
    Number number(const QString& name, Number otherwise) const
    {
        if (!has(name))
            return otherwise;
        bool understood = false;
        const int number = text(name).toInt(&understood);
        if (!understood || number < std::numeric_limits<Number>::min() ||
            number > std::numeric_limits<Number>::max())
            throw std::invalid_argument("«" + text(name).toStdString() + "» no vale para --" +
                                        name.toStdString() + ".");
        return static_cast<Number>(number);
    }

private:
    QCommandLineParser parser_;
};

inline QCommandLineOption valued(const char* name)
{
    QCommandLineOption option(QString::fromLatin1(name));
    option.setValueName(QStringLiteral("VALOR"));
    return option;
}

inline QCommandLineOption plain(const char* name) { return QCommandLineOption(QString::fromLatin1(name)); }

} // namespace zv::host
