// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/GuardedBrowser.h"

#include "platform/Desktop.h"
#include "views/ImageLoader.h"

#include <QFile>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextDocument>
#include <algorithm>

namespace {
constexpr qint64 kMaxPageBytes = 16 * 1024 * 1024;
// The page's own margins and the document's border, which a picture must leave room for.
constexpr int kPageMargin = 64;
const QString kResourcePrefix = QStringLiteral("res://");

QString AttributeOf(const QString& tag, const QString& name) {
    const QRegularExpression attribute(QStringLiteral("\\b") + name +
                                           QStringLiteral("\\s*=\\s*(?:\"([^\"]*)\"|'([^']*)'|([^\\s>]+))"),
                                       QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = attribute.match(tag);
    if (!match.hasMatch()) {
        return {};
    }
    for (int i = 1; i <= 3; ++i) {
        if (match.capturedLength(i) > 0) {
            return match.captured(i);
        }
    }
    return {};
}
} // namespace

GuardedBrowser::GuardedBrowser(Desktop& desktop, ImageLoader& images, QWidget* parent)
    : QTextBrowser(parent), m_desktop(desktop), m_images(images) {
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(QStringLiteral("Item preview"));
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) { BeforeNavigate(url); });
    connect(&m_images, &ImageLoader::ImageArrived, this, &GuardedBrowser::ImageArrived);
    connect(&m_images, &ImageLoader::ImageFailed, this, &GuardedBrowser::ImageFailed);
}

GuardedBrowser::~GuardedBrowser() = default;

void GuardedBrowser::Navigate(const QString& path) {
    m_currentDocument = path;
    QFile file(path);
    QString html;
    if (file.size() <= kMaxPageBytes && file.open(QIODevice::ReadOnly)) {
        html = QString::fromUtf8(file.readAll());
    }
    ShowHtml(WithoutUnfetchableImages(
        html, [this](const QUrl& url) { return !ImageLoader::IsFetchable(url) || m_images.HasFailed(url); }));
    verticalScrollBar()->setValue(0);
}

bool GuardedBrowser::BeforeNavigate(const QUrl& url) {
    const QString target = url.toString();
    if (url.isLocalFile() && url.toLocalFile() == m_currentDocument) {
        return true;
    }
    if (target == m_currentDocument || target.size() <= kShortUrlLength ||
        target.startsWith(kResourcePrefix)) {
        if (target.startsWith(u'#')) {
            scrollToAnchor(url.fragment());
        }
        return true;
    }
    if (IsSafeExternal(url)) {
        m_desktop.OpenDocument(target);
        Q_EMIT LinkOpened(url);
    }
    return false;
}

bool GuardedBrowser::IsSafeExternal(const QUrl& url) {
    if (!url.isValid()) {
        return false;
    }
    const QString scheme = url.scheme().toLower();
    if (scheme == QStringLiteral("mailto")) {
        return !url.path().isEmpty();
    }
    return (scheme == QStringLiteral("http") || scheme == QStringLiteral("https")) && !url.host().isEmpty();
}

QString GuardedBrowser::WithoutUnfetchableImages(const QString& html,
                                                 const std::function<bool(const QUrl&)>& failed) {
    static const QRegularExpression image(QStringLiteral("<img\\b[^>]*>"),
                                          QRegularExpression::CaseInsensitiveOption);
    QString result;
    result.reserve(html.size());
    qsizetype last = 0;
    QRegularExpressionMatchIterator it = image.globalMatch(html);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const QString tag = match.captured();
        if (!failed(QUrl(AttributeOf(tag, QStringLiteral("src"))))) {
            continue;
        }
        result += QStringView(html).mid(last, match.capturedStart() - last);
        // The alternative text is already escaped inside the attribute.
        result += AttributeOf(tag, QStringLiteral("alt"));
        last = match.capturedEnd();
    }
    result += QStringView(html).mid(last);
    return result;
}

QVariant GuardedBrowser::loadResource(int type, const QUrl& name) {
    if (type == QTextDocument::ImageResource) {
        const QImage image = m_images.Image(name);
        if (image.isNull()) {
            return {};
        }
        return Fitted(image);
    }
    // Style sheets and pages that a document names are never read: only the page itself shows.
    return {};
}

void GuardedBrowser::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    if (!m_html.isEmpty()) {
        const int value = verticalScrollBar()->value();
        ShowHtml(m_html);
        verticalScrollBar()->setValue(value);
    }
}

void GuardedBrowser::ImageArrived(const QUrl& url) {
    if (!m_html.contains(url.toString(QUrl::FullyEncoded)) && !m_html.contains(url.toString())) {
        return;
    }
    document()->addResource(QTextDocument::ImageResource, url, Fitted(m_images.Image(url)));
    document()->markContentsDirty(0, document()->characterCount());
}

void GuardedBrowser::ImageFailed(const QUrl& url) {
    if (!m_html.contains(url.toString(QUrl::FullyEncoded)) && !m_html.contains(url.toString())) {
        return;
    }
    const int value = verticalScrollBar()->value();
    ShowHtml(WithoutUnfetchableImages(m_html, [&url](const QUrl& src) { return src == url; }));
    verticalScrollBar()->setValue(value);
}

void GuardedBrowser::ShowHtml(const QString& html) {
    m_html = html;
    setHtml(html);
}

QImage GuardedBrowser::Fitted(const QImage& image) const {
    const int width = std::max(1, viewport()->width() - kPageMargin);
    if (image.isNull() || image.width() <= width) {
        return image;
    }
    return image.scaledToWidth(width, Qt::SmoothTransformation);
}
