// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zypanel: the command line and the one window.

#include "mainwindow.h"
#include "printerpanel.h"
#include "translations.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QLocale>
#include <QRegularExpression>
#include <QTextStream>

#include <zytlstrust.h>

namespace
{

/// In English, as the man page and as every other program of the library.
void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("Sends sliced models to a networked resin printer and runs its prints."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({{QStringLiteral("t"), QStringLiteral("token")},
                      QStringLiteral("Access token of the printer."),
                      QStringLiteral("token")});
    parser.addOption({QStringLiteral("ca"),
                      QStringLiteral("PEM file of who may vouch for the wss:// printer."),
                      QStringLiteral("file")});
    parser.addOption({QStringLiteral("fingerprint"),
                      QStringLiteral("SHA-256 of the only certificate to accept from it."),
                      QStringLiteral("sha256hex")});
    parser.addPositionalArgument(
        QStringLiteral("printer"),
        QStringLiteral("Connect at once to this printer: ws://host:port, or a saved name."),
        QStringLiteral("[printer]"));
    parser.addPositionalArgument(QStringLiteral("file"),
                                 QStringLiteral("Offer this file for sending."),
                                 QStringLiteral("[file]"));
}

/// Help and version are for terminals, which may have no display.
bool asksForText(QCommandLineParser &parser, int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    parser.parse(arguments);
    return parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("version"));
}

int usageError(const QString &what)
{
    QTextStream(stderr) << "zypanel: " << what << "; see zypanel --help" << Qt::endl;
    return 2;
}

/// What is wrong with the options for the printer's certificate; empty when nothing is.
QString certificateFault(const QCommandLineParser &parser)
{
    ZyTlsTrust trust;
    const QString authorities = parser.value(QStringLiteral("ca"));
    const QString fingerprint = parser.value(QStringLiteral("fingerprint"));
    if (parser.isSet(QStringLiteral("ca"))) {
        const QString fault = trust.useAuthorities(authorities);
        if (!fault.isEmpty())
            return QStringLiteral("--ca '%1': %2").arg(authorities, fault);
    }
    if (parser.isSet(QStringLiteral("fingerprint")) && !trust.pin(fingerprint))
        return QStringLiteral("--fingerprint '%1' is no SHA-256: 64 hex digits, with or without "
                              "colons")
            .arg(fingerprint);
    if (trust.isRestricted() && parser.positionalArguments().isEmpty())
        return QStringLiteral("--ca and --fingerprint need a printer");
    return {};
}

void nameApplication()
{
    QCoreApplication::setOrganizationName(QStringLiteral("zyWebsocket"));
    QCoreApplication::setApplicationName(QStringLiteral("zypanel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZYPANEL_VERSION));
}

} // namespace

int main(int argc, char *argv[])
{
    nameApplication();
    QCommandLineParser parser;
    describe(parser);
    if (asksForText(parser, argc, argv)) {
        const QCoreApplication application(argc, argv);
        parser.process(application);
    }

#if QT_VERSION_MAJOR < 6 // which always does both
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    QApplication application(argc, argv);
    QGuiApplication::setDesktopFileName(QStringLiteral("zypanel"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/zypanel/icon.png")));
    zypanel::installTranslations(application, QLocale());
    if (!parser.parse(QCoreApplication::arguments())) {
        QString what = parser.errorText();
        what.remove(QRegularExpression(QStringLiteral("\\.$")));
        return usageError(what);
    }
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() > 2)
        return usageError(
            QStringLiteral("too many arguments: %1").arg(arguments.mid(2).join(QLatin1Char(' '))));

    const QString fault = certificateFault(parser);
    if (!fault.isEmpty())
        return usageError(fault);

    zypanel::MainWindow window;
    window.panel()->setToken(parser.value(QStringLiteral("token")));
    if (arguments.size() == 2)
        window.panel()->setFile(QFileInfo(arguments.at(1)).absoluteFilePath());
    window.show();
    const QString authorities = parser.value(QStringLiteral("ca"));
    const QString fingerprint = parser.value(QStringLiteral("fingerprint"));
    if (!authorities.isEmpty() || !fingerprint.isEmpty())
        window.panel()->setCertificate(
            arguments.first(),
            authorities.isEmpty() ? QString() : QFileInfo(authorities).absoluteFilePath(),
            fingerprint);
    if (!arguments.isEmpty())
        window.panel()->connectTo(arguments.first());
    return QApplication::exec();
}
