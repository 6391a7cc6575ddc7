#include "cli/CommandLine.h"

#include "core/DatabasePaths.h"

CommandLine::CommandLine(const QStringList &args, const QStringList &valueOptions, const QStringList &flags)
{
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        if (arg == QLatin1String("--")) {
            m_positional << args.mid(i + 1);
            return;
        }
        if (!arg.startsWith(QLatin1String("--")) || arg.size() == 2) {
            m_positional << arg;
            continue;
        }
        const qsizetype equals = arg.indexOf(QLatin1Char('='));
        const QString name = equals < 0 ? arg : arg.left(equals);
        if (flags.contains(name)) {
            m_values.insert(name, QStringLiteral("yes"));
        } else if (valueOptions.contains(name)) {
            if (equals >= 0) {
                m_values.insert(name, arg.mid(equals + 1));
            } else if (i + 1 < args.size()) {
                m_values.insert(name, args.at(++i));
            } else {
                m_error = name + QStringLiteral(" needs a value");
                return;
            }
        } else {
            m_error = QStringLiteral("unknown option ") + name;
            return;
        }
    }
}

QString CommandLine::bundleFolder() const
{
    const QString db = option(QStringLiteral("--db"));
    return db.isEmpty() ? DatabasePaths::databaseLocation() : DatabasePaths::expandTilde(db);
}
