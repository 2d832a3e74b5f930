#include "ui/NewsLine.h"

#include "app/OwnProcess.h"
#include "formats/RssFeed.h"
#include "ui/Text.h"

#include <QSettings>
#include <QUrl>

namespace sweeply {

NewsLine::NewsLine() : m_http(besideProgram("libexec") + "/fetch") {
    setTextFormat(Qt::RichText);
    setOpenExternalLinks(true);
    setAccessibleName(localized("News"));
}

void NewsLine::start() {
    const auto address = QSettings().value(QLatin1String(kFeedAddress)).toString();
    if (address.isEmpty())
        return;
    m_fetching = std::jthread([this, url = utf8(address)](std::stop_token stop) {
        const auto feed = m_http.fetch({url, "Sweeply"}, stop);
        if (feed) // no news is no trouble
            QMetaObject::invokeMethod(
                this, [this, text = *feed] { show(text); }, Qt::QueuedConnection);
    });
}

void NewsLine::show(const std::string& feed) {
    const auto items = parseRssFeed(feed);
    if (!items || items->empty())
        return;
    const auto title = shown(items->front().title).toHtmlEscaped();
    const QUrl link(QString::fromStdString(items->front().link), QUrl::StrictMode);
    const bool isWebPage = link.scheme() == QLatin1String("https") || link.scheme() == QLatin1String("http");
    setText(
        isWebPage
            ? QStringLiteral("<a href=\"%1\">%2</a>").arg(QString::fromLatin1(link.toEncoded()).toHtmlEscaped(), title)
            : title);
}

} // namespace sweeply
