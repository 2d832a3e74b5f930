// askpass [PROMPT]: asks for a password in a dialog and prints it, for sudo.
#include "platform/Localization.h"

#include <QApplication>
#include <QInputDialog>
#include <cstdio>
#include <filesystem>

int main(int argc, char** argv) {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    sweeply::bindTextDomain(program.parent_path().parent_path().parent_path() / "share" / "locale");
    QApplication application(argc, argv);
    QInputDialog dialog;
    dialog.setWindowTitle(QStringLiteral("Sweeply"));
    dialog.setLabelText(QString::fromStdString(
        sweeply::localizedString("Sweeply needs an administrator's rights to remove these items.\nYour password:")));
    dialog.setTextEchoMode(QLineEdit::Password);
    if (dialog.exec() != QDialog::Accepted)
        return 1;
    std::printf("%s\n", dialog.textValue().toUtf8().constData());
    return 0;
}
