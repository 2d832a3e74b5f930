#include "ui/DesktopNotes.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QVariantMap>
#include <QWidget>

namespace sweeply {

void DesktopNotes::show(const DesktopNotification& notification) {
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // The body may be read as markup.
    const auto body = QString::fromStdString(notification.description).toHtmlEscaped();
    message << QStringLiteral("Sweeply") << 0U << QStringLiteral("com.brindle.Sweeply")
            << QString::fromStdString(notification.title) << body << QStringList()
            << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("com.brindle.Sweeply")},
                           {QStringLiteral("category"), QString::fromStdString(notification.name)}}
            << -1;
    QDBusConnection::sessionBus().asyncCall(message);
}

bool DesktopNotes::isApplicationActive() const { return QApplication::applicationState() == Qt::ApplicationActive; }

void DesktopNotes::requestUserAttention() {
    for (auto* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->isWindow())
            QApplication::alert(window);
    }
}

} // namespace sweeply
