#include "ui/InformationPanel.h"

#include "appcore/ResourceFinder.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "ui/Text.h"

#include <QDateTime>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

namespace sweeply {

namespace {

QString kindOf(const Result<FileAttributes>& attributes, std::int8_t type, bool isReceipt) {
    if (isReceipt)
        return localized("Installer receipt");
    if (type == nodetype::kLoginItem)
        return localized("Login item");
    if (!attributes)
        return localized("Group");
    switch (attributes->type) {
    case FileType::Regular:
        return localized("File");
    case FileType::Directory:
        return localized("Folder");
    case FileType::SymbolicLink:
        return localized("Link");
    case FileType::Other:
        break;
    }
    return localized("Special file");
}

QString removalOf(std::int8_t type, bool isReceipt) {
    if (type == nodetype::kLoginItem)
        return localized("It is no longer started at login; no file is removed.");
    if (type == nodetype::kLaunchItem)
        return localized("It is unloaded first, then its file is removed.");
    if (isReceipt)
        return localized("The system forgets that the package was installed.");
    return localized("It is removed for good, not put into the Trash.");
}

} // namespace

InformationPanel::InformationPanel(const FileManager& files, TreeLock& treeLock, SizeUnits units)
    : m_files(files), m_treeLock(treeLock), m_units(units), m_nothing(new QLabel), m_details(new QWidget),
      m_name(new QLabel), m_path(new QLabel), m_kind(new QLabel), m_size(new QLabel), m_modified(new QLabel),
      m_why(new QLabel), m_removal(new QLabel) {
    auto* form = new QFormLayout;
    form->setRowWrapPolicy(QFormLayout::WrapAllRows);
    form->setVerticalSpacing(8);
    const auto add = [&](const char* title, QLabel* label) {
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->setAccessibleName(localized(title));
        auto* heading = new QLabel(localized(title));
        auto font = heading->font();
        font.setPointSizeF(font.pointSizeF() * 0.85);
        font.setBold(true);
        heading->setFont(font);
        heading->setBuddy(label);
        form->addRow(heading, label);
    };
    add(translatable("Name"), m_name);
    add(translatable("Where"), m_path);
    add(translatable("Kind"), m_kind);
    add(translatable("Size"), m_size);
    add(translatable("Changed"), m_modified);
    add(translatable("Why it is listed"), m_why);
    add(translatable("What removing it means"), m_removal);
    auto* all = new QVBoxLayout(this);
    m_details->setLayout(form);
    form->setContentsMargins(0, 0, 0, 0);
    m_nothing->setText(localized("Select something to see more about it."));
    m_nothing->setWordWrap(true);
    all->addWidget(m_nothing);
    all->addWidget(m_details);
    all->addStretch(1);
    setMinimumWidth(220);
    show(nullptr, {});
}

void InformationPanel::show(const Node::Pointer& node, const QString& moduleDescription) {
    if (!node) {
        m_details->hide();
        m_nothing->show();
        return;
    }
    m_details->show();
    m_nothing->hide();
    std::string path;
    std::int8_t type = 0;
    bool isReceipt = false;
    {
        const std::lock_guard lock(m_treeLock);
        path = node->path();
        type = node->type();
        isReceipt = node->name().find(kReceiptEntry) != std::string_view::npos;
        m_name->setText(shown(node->name()));
        m_size->setText(QString::fromStdString(stringSizeFromLong(node->longSize(), m_units)));
    }
    const auto attributes =
        !path.starts_with('/') ? Failure(Error{}) : m_files.attributesOfItemAtPath(path, Links::DontFollow);
    m_path->setText(path.starts_with('/') ? shown(path) : QStringLiteral("–"));
    m_kind->setText(kindOf(attributes, type, isReceipt));
    m_modified->setText(attributes ? QLocale().toString(QDateTime::fromSecsSinceEpoch(attributes->modified.tv_sec),
                                                        QLocale::ShortFormat)
                                   : QStringLiteral("–"));
    m_why->setText(moduleDescription);
    m_removal->setText(removalOf(type, isReceipt));
}

} // namespace sweeply
