#include "ui/DiskImageHelp.h"

#include "ui/Text.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sweeply {

namespace {

constexpr const char* kCommands = "cp --reflink=auto --sparse=always mac.img copy.img\n"
                                  "disk=$(sudo losetup --find --show --partscan copy.img)\n"
                                  "lsblk -o NAME,FSTYPE,LABEL,SIZE \"$disk\"\n"
                                  "sudo fsck.hfsplus -n \"${disk}p2\"\n"
                                  "sudo mkdir -p /mnt/mac\n"
                                  "sudo mount -t hfsplus -o rw,nosuid,nodev,noexec \"${disk}p2\" /mnt/mac\n"
                                  "findmnt -no OPTIONS /mnt/mac\n"
                                  "\n"
                                  "sudo umount /mnt/mac && sudo losetup --detach \"$disk\"";

QLabel* paragraph(const QString& text) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

void showDiskImageHelp(QWidget* parent) {
    QDialog dialog(parent);
    dialog.setWindowTitle(localized("Disk Images"));
    auto* commands = new QPlainTextEdit(QLatin1String(kCommands));
    commands->setReadOnly(true);
    commands->setLineWrapMode(QPlainTextEdit::NoWrap);
    commands->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    commands->setAccessibleName(localized("Commands"));
    commands->setMinimumHeight(commands->fontMetrics().lineSpacing() * 11);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setText(localizedTitle("Close"));
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* all = new QVBoxLayout(&dialog);
    all->addWidget(
        paragraph(localized("A disk image is a file. Mount it, and choose the folder that it is mounted in. Work on a "
                            "copy until you trust what you do. In a terminal:")));
    all->addWidget(commands);
    all->addWidget(
        paragraph(localized("The partition of type hfsplus is the Mac's; here it is the second. A compressed image "
                            "(.dmg) is unpacked first, with dmg2img.")));
    all->addWidget(
        paragraph(localized("Linux does not write to a volume that has a journal or was not unmounted cleanly, and "
                            "mounts it read-only: then you can look at everything and remove nothing. Turn the "
                            "journal off on the Mac (diskutil disableJournal).")));
    all->addWidget(buttons);
    dialog.resize(620, 420);
    dialog.exec();
}

} // namespace sweeply
