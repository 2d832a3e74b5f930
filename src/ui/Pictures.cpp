#include "ui/Pictures.h"

#include "platform/BundleInfo.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"
#include "ui/Drawings.h"

#include <QBuffer>
#include <QImageReader>
#include <QPixmap>

namespace sweeply {

namespace {

constexpr std::size_t kLargestPicture = std::size_t{4} << 20U;
constexpr int kSide = 64; // pixels
constexpr int kLargestSide = 2048;

bool isBundle(const std::string& path) {
    const auto extension = pathExtension(path);
    return extension == "app" || extension == "prefPane" || extension == "wdgt";
}

/// The file that a bundle names as its icon, as far as it can be read; null for anything else.
QImage pictureOf(const FileManager& files, const std::string& bundle) {
    std::string path = joinedPath(bundle, "Icon.png"); // a widget's
    if (pathExtension(bundle) != "wdgt") {
        const auto info = infoOfBundle(files, bundle);
        const auto* name = info ? info->findString("CFBundleIconFile") : nullptr;
        if (!name || name->empty() || name->find('/') != std::string::npos)
            return {};
        path = joinedPath(bundle, "Contents/Resources/" + *name + (pathExtension(*name).empty() ? ".icns" : ""));
    }
    const auto bytes = files.contentsAtPath(path, kLargestPicture);
    if (!bytes)
        return {};
    QByteArray data = QByteArray::fromStdString(*bytes);
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.width() > kLargestSide || size.height() > kLargestSide)
        return {};
    const auto image = reader.read();
    return image.isNull() ? image : image.scaled(kSide, kSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

Pictures::~Pictures() {
    m_readers.clear();
    m_readers.waitForDone();
}

QIcon Pictures::iconFor(Icon icon, const std::string& path) {
    if (icon != Icon::ItsOwn && icon != Icon::None)
        return drawings::iconFor(icon);
    // What a name looks like will do: asking the disk about every row would not.
    if (!isBundle(path))
        return pathExtension(path).empty() ? drawings::iconFor(Icon::GenericFolder) : drawings::document();
    const auto key = QString::fromStdString(path);
    if (const auto known = m_own.constFind(key); known != m_own.constEnd())
        return *known;
    m_own.insert(key, drawings::bundle()); // until its own is there, and if it has none
    read(path);
    return drawings::bundle();
}

void Pictures::read(const std::string& bundle) {
    m_readers.start([this, bundle] {
        const auto image = pictureOf(m_files, bundle);
        if (image.isNull())
            return;
        QMetaObject::invokeMethod(&m_context, [this, bundle, image] {
            m_own.insert(QString::fromStdString(bundle), QIcon(QPixmap::fromImage(image)));
            m_changed();
        });
    });
}

QIcon Pictures::moduleIcon(std::uint8_t viewCode) { return drawings::module(viewCode); }

QIcon Pictures::applicationIcon() { return drawings::application(); }

} // namespace sweeply
