// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What every program's command line has in common: version, usage errors, texts as Qt has them.

#include "commandline.h"

#include "errorline.h"

#include <QFile>

#include <algorithm>
#include <clocale>
#include <vector>

namespace zyapp
{

namespace
{

/// How many letters are to be added, left out, replaced or swapped with the next.
int typingDistance(const std::string &left, const std::string &right)
{
    const std::size_t width = right.size() + 1;
    std::vector<int> cells((left.size() + 1) * width);
    const auto cell = [&](std::size_t i, std::size_t j) -> int & { return cells[i * width + j]; };
    for (std::size_t i = 0; i <= left.size(); ++i) {
        for (std::size_t j = 0; j <= right.size(); ++j) {
            if (i == 0 || j == 0) {
                cell(i, j) = static_cast<int>(i + j);
                continue;
            }
            const int replaced = left[i - 1] == right[j - 1] ? 0 : 1;
            cell(i, j)
                = std::min({cell(i - 1, j) + 1, cell(i, j - 1) + 1, cell(i - 1, j - 1) + replaced});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1])
                cell(i, j) = std::min(cell(i, j), cell(i - 2, j - 2) + 1);
        }
    }
    return cells.back();
}

/// The command most like the first word that is none; empty when nothing is much like it.
QString nearestCommand(const CLI::App &app)
{
    constexpr int mostlyAlike = 2;
    const CLI::App *command = &app;
    while (!command->get_subcommands().empty())
        command = command->get_subcommands().front();
    const std::vector<std::string> words = app.remaining(true);
    if (words.empty())
        return {};
    std::string nearest;
    int least = std::min(mostlyAlike, static_cast<int>(words.front().size()) / 2) + 1;
    for (const CLI::App *candidate : command->get_subcommands({})) {
        const int distance = typingDistance(words.front(), candidate->get_name());
        if (distance < least) {
            least = distance;
            nearest = candidate->get_name();
        }
    }
    return QString::fromStdString(nearest);
}

} // namespace

void addVersionFlag(CLI::App &app, const std::string &program)
{
    app.set_version_flag("--version", program + " " ZY_VERSION, "Print the version and exit");
}

std::optional<int> parse(CLI::App &app, int argc, char **argv)
{
    // Numbers have a decimal point in every locale, which the application object has set by now.
    std::setlocale(LC_NUMERIC, "C");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error);
        const QString program = QString::fromStdString(app.get_name());
        const QString nearest = nearestCommand(app);
        const QString help = QStringLiteral("see %1 --help").arg(program);
        printError(program, QString::fromStdString(error.what()), {},
                   nearest.isEmpty() ? help
                                     : QStringLiteral("did you mean '%1'? %2").arg(nearest, help));
        return usageError;
    }
    return std::nullopt;
}

QString fromArgument(const std::string &argument)
{
    return QFile::decodeName(QByteArray::fromStdString(argument));
}

} // namespace zyapp
