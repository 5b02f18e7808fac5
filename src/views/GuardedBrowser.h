// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QString>
#include <QTextBrowser>
#include <QUrl>
#include <functional>

class Desktop;
class ImageLoader;

// The preview: shows a rendered page and never navigates away from it. A link that leaves the
// page goes to the desktop's default browser, and only when it is an http, https or mailto
// address; anything else (files, programs, scripts, unknown schemes) goes nowhere. No script
// ever runs. Pictures arrive later through the image loader; until then, and for good when one
// cannot be had, the picture's alternative text stands in its place.
class GuardedBrowser final : public QTextBrowser {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GuardedBrowser)
public:
    // Addresses this short are the browser's own and stay inside it.
    static constexpr int kShortUrlLength = 10;

    GuardedBrowser(Desktop& desktop, ImageLoader& images, QWidget* parent = nullptr);
    ~GuardedBrowser() override;

    // Shows the page file; it becomes the current document.
    void Navigate(const QString& path);
    QString CurrentDocument() const { return m_currentDocument; }

    // What a navigation to `url` does: stays in the preview (true) or is cancelled (false), in
    // which case safe addresses were handed to the desktop.
    bool BeforeNavigate(const QUrl& url);
    static bool IsSafeExternal(const QUrl& url);

    // The page with its pictures that cannot be fetched replaced by their alternative text.
    static QString WithoutUnfetchableImages(const QString& html,
                                            const std::function<bool(const QUrl&)>& failed);

Q_SIGNALS:
    // A link was handed to the desktop.
    void LinkOpened(const QUrl& url);

protected:
    QVariant loadResource(int type, const QUrl& name) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void ImageArrived(const QUrl& url);
    void ImageFailed(const QUrl& url);
    void ShowHtml(const QString& html);
    QImage Fitted(const QImage& image) const;

    Desktop& m_desktop;
    ImageLoader& m_images;
    QString m_currentDocument;
    QString m_html;
};
