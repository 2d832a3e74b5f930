#include "app/OwnProcess.h"
#include "appcore/CommandLineController.h"
#include "platform/Localization.h"
#include "platform/MessageLanguage.h"
#include "ui/Drawings.h"
#include "ui/MainWindow.h"
#include "ui/ProblemReport.h"
#include "ui/Text.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QPalette>
#include <QStandardPaths>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

using namespace sweeply;

constexpr const char* kUsage =
    "usage: sweeply [--root DIR] [--os VERSION] [--arch intel|ppc] [REFERENCE PATH...] [FILE...]\n"
    "The references are those of sweeply-cli; see its manual page.\n";

struct Request {
    TargetOptions target;
    std::vector<std::string> files;
};

/// Nothing for a line that cannot be read.
std::optional<Request> requestIn(const std::vector<std::string>& arguments) {
    Request request;
    for (std::size_t next = 1; next < arguments.size(); ++next) {
        const std::string& argument = arguments[next];
        const bool takesValue = argument == "--root" || argument == "--os" || argument == "--arch" ||
                                CommandLineController::takesValue(argument);
        if (takesValue && next + 1 == arguments.size())
            return std::nullopt;
        if (argument == "--root") {
            request.target.root = arguments[++next];
        } else if (argument == "--os") {
            request.target.osVersion = arguments[++next];
        } else if (argument == "--arch") {
            request.target.processorFamily = arguments[++next];
        } else if (CommandLineController::isReference(argument)) {
            request.target.references.push_back(argument);
            if (takesValue)
                request.target.references.push_back(arguments[++next]);
        } else if (argument.starts_with('-')) {
            return std::nullopt;
        } else {
            request.files.push_back(argument);
        }
    }
    return request;
}

} // namespace

int main(int argc, char** argv) {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    bindTextDomain(program.parent_path().parent_path() / "share" / "locale");
    // sudo asks for the password by a dialog of ours; we never see it.
    ::setenv("SUDO_ASKPASS", (besideProgram("libexec") + "/askpass").c_str(), 0);

    QApplication application(argc, argv); // takes its own options (-style, -reverse) away
    const std::vector<std::string> arguments(argv, argv + argc);
    const auto request = requestIn(arguments);
    if (!request) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    QTranslator ownTexts; // of Qt: the menus of text fields, the dialog that chooses files
    if (ownTexts.load(QLocale(QString::fromStdString(messageLanguage())), QStringLiteral("qtbase"), QStringLiteral("_"),
                      QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&ownTexts);
    QApplication::setApplicationName(QStringLiteral("sweeply"));
    QApplication::setOrganizationName(QStringLiteral("sweeply"));
    QApplication::setDesktopFileName(QStringLiteral("com.brindle.Sweeply"));
    QApplication::setWindowIcon(drawings::application());
    // Desktops that give dark colours forget this one, and black on black nobody can read. Seen on either; the rest
    // stays theirs.
    QPalette hints;
    hints.setColor(QPalette::PlaceholderText, QColor(128, 128, 128));
    QApplication::setPalette(hints);
    reportUncaughtExceptions(utf8(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)), SWEEPLY_VERSION);
    Desktop desktop;
    MainWindow window(desktop, arguments);
    if (!window.open(request->target, request->files))
        return 0;
    window.show();
    return QApplication::exec();
}
