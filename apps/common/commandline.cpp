// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What every program's command line has in common: version, usage errors, texts as Qt has them.

#include "commandline.h"

#include "errorline.h"

#include <QFile>

namespace zyapp
{

void addVersionFlag(CLI::App &app, const std::string &program)
{
    app.set_version_flag("--version", program + " " ZY_VERSION, "Print the version and exit");
}

std::optional<int> parse(CLI::App &app, int argc, char **argv)
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error);
        const QString program = QString::fromStdString(app.get_name());
        printError(program, QString::fromStdString(error.what()), {},
                   QStringLiteral("see %1 --help").arg(program));
        return usageError;
    }
    return std::nullopt;
}

QString fromArgument(const std::string &argument)
{
    return QFile::decodeName(QByteArray::fromStdString(argument));
}

} // namespace zyapp
