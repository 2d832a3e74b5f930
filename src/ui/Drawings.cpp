#include "ui/Drawings.h"

#include "ui/PageCodes.h"

#include <QByteArray>
#include <QHash>
#include <QPainter>
#include <QPixmap>
#include <QString>
#include <QSvgRenderer>
#include <iterator>

namespace sweeply::drawings {

namespace {

/// A tile of that colour with white shapes on a field of 24 by 24.
QIcon tile(const char* colour, const char* shapes) {
    static QHash<QString, QIcon> drawn;
    const QString svg =
        QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 24 24'>"
                       "<defs><linearGradient id='g' x1='0' y1='0' x2='0' y2='1'>"
                       "<stop offset='0' stop-color='#ffffff' stop-opacity='0.28'/>"
                       "<stop offset='1' stop-color='#000000' stop-opacity='0.10'/></linearGradient></defs>"
                       "<rect x='1' y='1' width='22' height='22' rx='5.5' fill='%1'/>"
                       "<rect x='1' y='1' width='22' height='22' rx='5.5' fill='url(#g)'/>"
                       "<g fill='none' stroke='#fff' stroke-width='1.7' stroke-linecap='round' "
                       "stroke-linejoin='round'>%2</g></svg>")
            .arg(QLatin1String(colour), QLatin1String(shapes));
    if (const auto known = drawn.constFind(svg); known != drawn.constEnd())
        return *known;
    QSvgRenderer renderer(svg.toUtf8());
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128}) {
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(picture);
        icon.addPixmap(picture, QIcon::Selected); // not tinted: the row's own colour says so
    }
    drawn.insert(svg, icon);
    return icon;
}

constexpr const char* kDisk =
    "<ellipse cx='12' cy='8' rx='6' ry='2.4'/><path d='M6 8v8c0 1.3 2.7 2.4 6 2.4s6-1.1 6-2.4V8M6 "
    "12c0 1.3 2.7 2.4 6 2.4s6-1.1 6-2.4'/>";
constexpr const char* kPage = "<path d='M7 5h7l3 3v11H7z'/><path d='M9.5 11h5M9.5 13.7h5M9.5 16.3h3'/>";
constexpr const char* kGlobe =
    "<circle cx='12' cy='12' r='6.8'/><path d='M5.2 12h13.6M12 5.2c-4 4-4 9.600 0 13.600c4-4 "
    "4-9.600 0-13.600'/>";
constexpr const char* kChip =
    "<rect x='7.500' y='7.500' width='9' height='9' rx='1'/><path d='M10 5v2.500M14 5v2.500M10 "
    "16.500V19M14 16.500V19M5 10h2.500M5 14h2.500M16.500 10H19M16.500 14H19'/>";
constexpr const char* kBrackets = "<path d='M9 7l-4 5l4 5M15 7l4 5l-4 5'/>";
constexpr const char* kPuzzle = "<path d='M6 9h3.500a2 2 0 1 1 4 0H17v3.500a2 2 0 1 1 0 4V19H6z'/>";
constexpr const char* kBox =
    "<path d='M5.500 9l6.500-3.500L18.500 9v7L12 19.500L5.500 16zM5.500 9l6.500 3.500L18.500 9M12 12.500v7'/>";
constexpr const char* kShredder =
    "<path d='M8 11V5h8v6M5.500 11h13v3h-13zM8 16.500v2.500M12 16.500v2.500M16 16.500v2.500'/>";
constexpr const char* kScreen =
    "<rect x='5' y='6' width='14' height='9.500' rx='1.200'/><path d='M12 15.500V18.500M8.500 "
    "18.500h7'/>";
constexpr const char* kClock = "<path d='M6.200 8.500A7 7 0 1 1 5 12M5 5.500v3.200h3.200M12 8v4.300l3 1.700'/>";
constexpr const char* kFolder = "<path d='M5 8v9.500h14V9.500h-7L10.500 7H5z'/>";
constexpr const char* kGear =
    "<circle cx='12' cy='12' r='3'/><path d='M12 5.500v2M12 16.500v2M5.500 12h2M16.500 12h2M7.400 "
    "7.400l1.400 1.400M15.200 15.200l1.400 1.400M16.600 7.400l-1.400 1.400M8.800 15.200l-1.400 1.400'/>";
constexpr const char* kPower = "<path d='M12 5.500v6M8.200 8a6 6 0 1 0 7.600 0'/>";
constexpr const char* kPlug = "<path d='M9 5v4M15 5v4M7 9h10v2.500a5 5 0 0 1-10 0zM12 16.500V19.500'/>";
constexpr const char* kTrash = "<path d='M6 8h12M8 8l.8 11h6.400L16 8M10 8V6h4v2'/>";
constexpr const char* kBroom =
    "<path d='M17.500 5l-5 7M9 11l5.500 3.800M9 11c-1.500 2.500-3.200 3.500-4.500 4c2 2.500 4.500 4 8 "
    "4.500c1.200-1.300 1.800-3 2-4.700M8.200 16.600l1.500-1.600'/>";

constexpr const char* kMap = "<path d='M5 6h14v12H5zM12.500 6v12M12.500 11h6.500M16 11v7'/>";

/// By view code; the overview's first.
constexpr const char* kModuleColours[] = {"#1d7f8c", "#3f7ad8", "#c98a1b", "#2f9e63", "#7b5cc4",
                                          "#56616e", "#c2558c", "#d2622f", "#b23b3b"};

} // namespace

QIcon application() { return tile("#1d7f8c", kBroom); }

QIcon module(std::uint8_t viewCode) {
    switch (viewCode) {
    case 1:
        return tile(kModuleColours[1], kDisk);
    case 2:
        return tile(kModuleColours[2], kPage);
    case 3:
        return tile(kModuleColours[3], kGlobe);
    case 4:
        return tile(kModuleColours[4], kChip);
    case 5:
        return tile(kModuleColours[5], kBrackets);
    case 6:
        return tile(kModuleColours[6], kPuzzle);
    case 7:
        return tile(kModuleColours[7], kBox);
    case 8:
        return tile(kModuleColours[8], kShredder);
    case kHistoryView:
        return tile("#8a6d3b", kClock);
    case kSpaceView:
        return tile("#4d8a3d", kMap);
    default:
        return tile(kModuleColours[0], kScreen);
    }
}

QColor moduleColour(std::uint8_t viewCode) {
    return QColor(QLatin1String(kModuleColours[viewCode < std::size(kModuleColours) ? viewCode : 0]));
}

QIcon iconFor(Icon icon) {
    switch (icon) {
    case Icon::UserCaches:
    case Icon::PhotoSyncCaches:
    case Icon::SystemCaches:
        return module(1);
    case Icon::UserLogs:
    case Icon::SystemLogs:
        return module(2);
    case Icon::Language:
        return module(3);
    case Icon::DevelopmentJunk:
    case Icon::OtherJunk:
        return module(5);
    case Icon::FinderJunk:
    case Icon::WindowsJunk:
    case Icon::GenericFolder:
    case Icon::ItsOwn:
    case Icon::None:
        return tile("#5b93c7", kFolder);
    case Icon::Trashes:
        return tile("#6d7f70", kTrash);
    case Icon::Preferences:
        return tile("#77808c", kGear);
    case Icon::StartupItem:
        return tile("#3b9c9c", kPower);
    case Icon::Package:
        return tile("#a9773f", kBox);
    case Icon::WidgetLeftovers:
        return module(6);
    case Icon::Plugin:
        return tile("#8a63b8", kPlug);
    }
    return {};
}

QIcon bundle() { return tile("#4a86d0", kScreen); }

QIcon document() { return tile("#8a95a1", kPage); }

} // namespace sweeply::drawings
