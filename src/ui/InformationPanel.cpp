#include "ui/InformationPanel.h"

#include "app/ModuleCatalog.h"
#include "appcore/ResourceFinder.h"
#include "appcore/receipts/ReceiptFiles.h"
#include "engine/tree/EvidenceText.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "ui/Text.h"
#include "ui/WrappedLabel.h"

#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
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

QString removalOf(std::uint8_t viewCode, std::int8_t type, bool isReceipt) {
    if (viewCode == kLogsView)
        return localized("What is in it goes for good; the file or folder itself stays.");
    if (viewCode == kBinariesView)
        return localized("Code for processors that the Mac has not is taken out of it; the rest stays.");
    if (type == nodetype::kLoginItem)
        return localized("It is no longer started at login; no file is removed.");
    if (type == nodetype::kLaunchItem)
        return localized("It is unloaded first, then its file is removed.");
    if (isReceipt)
        return localized("The system forgets that the package was installed.");
    return localized("It is removed for good, not put into the Trash.");
}

/// Why the item is listed: its own evidence, or that of what goes with it unseen. nullptr for a group.
const Evidence* evidenceOf(const Node& node) {
    const bool isSeen = node.evidence() || !node.hasInvisibleChildren();
    return isSeen ? node.evidence() : node.invisibleChildren().front()->evidence();
}

QString sentencesFor(const Evidence& evidence, bool isChecked) {
    const std::string claim = isChecked ? claimsBeside(evidence) : reasonAgainstChecking(evidence);
    return shown(sentenceFor(evidence) + (claim.empty() ? "" : " " + claim));
}

/// Where the item lies, or the nearest one above it that lies somewhere; empty for a group of a module.
std::string placeOf(const Node& node) {
    const Node* place = &node;
    while (place && !place->path().starts_with('/'))
        place = place->parentNode();
    return place ? place->path() : std::string();
}

QLabel* heading(const QString& text) {
    auto* label = new QLabel(text);
    auto font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.85);
    font.setBold(true);
    label->setFont(font);
    return label;
}

} // namespace

InformationPanel::InformationPanel(const FileManager& files, TreeLock& treeLock, SizeUnits units)
    : m_files(files), m_treeLock(treeLock), m_units(units), m_columns(new QBoxLayout(QBoxLayout::TopToBottom)),
      m_name(new WrappedLabel), m_path(new WrappedLabel), m_kind(new QLabel), m_size(new QLabel),
      m_modified(new QLabel), m_why(new QLabel), m_removal(new QLabel), m_behindTitle(heading({})),
      m_behind(new QPlainTextEdit) {
    // A form would give texts of several lines too little height.
    QBoxLayout* column = nullptr;
    const auto beginColumn = [&](int stretch) {
        column = new QVBoxLayout;
        column->setSpacing(4);
        m_columns->addLayout(column, stretch);
    };
    const auto add = [&](const char* key, QLabel* label) {
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->setAccessibleName(localized(key));
        auto* title = heading(localized(key));
        title->setBuddy(label);
        column->addWidget(title);
        column->addWidget(label);
        column->addSpacing(4);
    };
    beginColumn(0);
    add(translatable("Name"), m_name);
    add(translatable("Where"), m_path);
    beginColumn(0);
    add(translatable("Kind"), m_kind);
    add(translatable("Size"), m_size);
    add(translatable("Changed"), m_modified);
    beginColumn(0);
    add(translatable("Why it is listed"), m_why);
    add(translatable("What removing it means"), m_removal);
    beginColumn(1);
    column->addWidget(m_behindTitle);
    column->addWidget(m_behind, 1);
    m_behind->setAccessibleName(localized("What it stands for"));
    m_behind->setReadOnly(true);
    m_behind->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_behind->setMinimumHeight(5 * fontMetrics().lineSpacing());
    m_behind->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored); // the panel stays as wide as it is
    m_behindTitle->setBuddy(m_behind);
    auto* all = new QVBoxLayout(this);
    all->addLayout(m_columns);
    all->addStretch(0);
    showNothing();
}

void InformationPanel::setOrientation(Qt::Orientation orientation) {
    const bool isUpright = orientation == Qt::Vertical;
    m_columns->setDirection(isUpright ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_columns->setSpacing(isUpright ? 0 : 2 * fontMetrics().averageCharWidth());
    for (int column = 0; column < m_columns->count(); ++column) {
        const bool isLast = column + 1 == m_columns->count(); // the list, which takes what height there is
        m_columns->setStretch(column, isUpright && !isLast ? 0 : 1);
        m_columns->itemAt(column)->setAlignment(isUpright || isLast ? Qt::Alignment() : Qt::AlignTop);
    }
}

void InformationPanel::showNothing() {
    m_node.reset();
    showPathsBehind({}, {});
    m_changed();
}

void InformationPanel::show(const Node::Pointer& node, const Details& details) {
    m_node = node;
    m_purpose = details.purpose;
    std::string path;
    std::string place;
    std::int8_t type = 0;
    bool isReceipt = false;
    {
        const std::lock_guard lock(m_treeLock);
        path = node->path();
        place = placeOf(*node);
        type = node->type();
        isReceipt = node->name().find(kReceiptEntry) != std::string_view::npos;
        m_name->setText(shown(node->name()));
    }
    const auto attributes =
        !path.starts_with('/') ? Failure(Error{}) : m_files.attributesOfItemAtPath(path, Links::DontFollow);
    m_path->setText(place.empty() ? QStringLiteral("–") : shown(place));
    m_kind->setText(kindOf(attributes, type, isReceipt));
    m_modified->setText(attributes ? QLocale().toString(QDateTime::fromSecsSinceEpoch(attributes->modified.tv_sec),
                                                        QLocale::ShortFormat)
                                   : QStringLiteral("–"));
    m_removal->setText(removalOf(details.viewCode, type, isReceipt));
    showPathsBehind(details.pathsBehind, place);
    refresh();
    m_changed();
}

void InformationPanel::refresh() {
    if (!m_node)
        return;
    const std::lock_guard lock(m_treeLock);
    const auto* evidence = evidenceOf(*m_node);
    m_why->setText(evidence ? sentencesFor(*evidence, m_node->ifEnabled()) : m_purpose);
    m_size->setText(QString::fromStdString(stringSizeFromLong(m_node->longSize(), m_units)));
}

void InformationPanel::showPathsBehind(const std::vector<std::string>& paths, const std::string& folder) {
    const std::string inside = folder + '/';
    QStringList lines;
    for (const std::string_view path : paths)
        lines << shown(path.starts_with(inside) ? path.substr(inside.size()) : path);
    m_behindTitle->setText(
        QString::fromStdString(localizedFormat("What it stands for (%@)", {std::to_string(paths.size())})));
    m_behind->setPlainText(lines.join(QLatin1Char('\n')));
    m_behindTitle->setVisible(!paths.empty());
    m_behind->setVisible(!paths.empty());
}

} // namespace sweeply
