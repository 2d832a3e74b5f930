#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace sweeply {

/// A folder of this machine that holds a Mac OS X system or should.
struct MacPlace {
    QString path;
    QString system;   ///< which one it is; empty where there is none that can be worked on
    QString obstacle; ///< why it cannot be chosen; empty where it can
};

/// Looks at a folder.
[[nodiscard]] MacPlace lookAtPlace(const QString& path);
/// The Macs among the mounted volumes, with those of a Mac's kind that hold no system to work on, and then the places
/// that were opened `last`. Asks every disk there is, so not on the interface's thread.
[[nodiscard]] QList<MacPlace> findMacPlaces(const QStringList& last);

} // namespace sweeply
