// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinArtist.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <vector>

namespace {

constexpr int kScales[] = {1, 2};
constexpr double kStroke = 1.5;
constexpr double kIconStroke = 1.2;
constexpr double kRadius = 4;

void Fill(QPainter& p, double x, double y, double w, double h, const QColor& colour) {
    p.fillRect(QRectF(x, y, w, h), colour);
}

void Gradient(QPainter& p, QRectF area, const QColor& top, const QColor& bottom) {
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    p.fillRect(area, gradient);
}

QColor Mix(const QColor& a, const QColor& b) {
    return QColor((a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2);
}

QPen Pen(const QColor& colour, double width = kStroke) {
    return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

// --- Button symbols, drawn around the centre (c, c) of a square button. ---

void Cross(QPainter& p, double c, double r, const QColor& colour) {
    p.setPen(Pen(colour));
    p.drawLine(QPointF(c - r, c - r), QPointF(c + r, c + r));
    p.drawLine(QPointF(c - r, c + r), QPointF(c + r, c - r));
}

void Minimise(QPainter& p, double c, const QColor& colour) {
    p.setPen(Pen(colour));
    p.drawLine(QPointF(c - 4, c + 3.5), QPointF(c + 4, c + 3.5));
}

void Maximise(QPainter& p, double c, const QColor& colour) {
    p.setPen(Pen(colour, 1.2));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(c - 4, c - 4, 8, 8));
    Fill(p, c - 4, c - 4, 8, 2, colour);
}

void WindowFrame(QPainter& p, double c, const QColor& colour) {
    p.setPen(Pen(colour, 1.2));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(c - 5.5, c - 4.5, 11, 9), 1.5, 1.5);
    Fill(p, c - 5.5, c - 4.5, 11, 2.5, colour);
    p.setPen(Pen(colour, 1));
    p.drawLine(QPointF(c - 3, c + 1), QPointF(c + 3, c + 1));
}

void Person(QPainter& p, double c, const QColor& colour) {
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawEllipse(QPointF(c, c - 2.6), 2.7, 2.7);
    QPainterPath shoulders;
    shoulders.moveTo(c - 5.5, c + 5.5);
    shoulders.cubicTo(QPointF(c - 5.5, c + 0.8), QPointF(c + 5.5, c + 0.8), QPointF(c + 5.5, c + 5.5));
    shoulders.closeSubpath();
    p.drawPath(shoulders);
}

void Plus(QPainter& p, double c, const QColor& colour) {
    p.setPen(Pen(colour, 1.8));
    p.drawLine(QPointF(c - 4.5, c), QPointF(c + 4.5, c));
    p.drawLine(QPointF(c, c - 4.5), QPointF(c, c + 4.5));
}

void Chevron(QPainter& p, double c, double dx, bool left, const QColor& colour) {
    const double s = left ? -1 : 1;
    p.setPen(Pen(colour, 1.7));
    p.setBrush(Qt::NoBrush);
    QPainterPath path;
    path.moveTo(c + dx - 1.8 * s, c - 4);
    path.lineTo(c + dx + 2.2 * s, c);
    path.lineTo(c + dx - 1.8 * s, c + 4);
    p.drawPath(path);
}

void Bar(QPainter& p, double x, double c, const QColor& colour) {
    p.setPen(Pen(colour, 1.7));
    p.drawLine(QPointF(x, c - 4), QPointF(x, c + 4));
}

void Pause(QPainter& p, double c, const QColor& colour) {
    Fill(p, c - 3.5, c - 4, 2.5, 8, colour);
    Fill(p, c + 1, c - 4, 2.5, 8, colour);
}

void Play(QPainter& p, double c, const QColor& colour) {
    p.setPen(Pen(colour, 1));
    p.setBrush(colour);
    QPainterPath path;
    path.moveTo(c - 2.5, c - 4.2);
    path.lineTo(c + 4, c);
    path.lineTo(c - 2.5, c + 4.2);
    path.closeSubpath();
    p.drawPath(path);
}

void Menu(QPainter& p, double c, const QColor& colour) {
    p.setPen(Pen(colour, 1.5));
    for (double y : {c - 3.5, c, c + 3.5}) {
        p.drawLine(QPointF(c - 4.5, y), QPointF(c + 4.5, y));
    }
}

void ExternalLink(QPainter& p, double c, const QColor& colour, double width) {
    p.setPen(Pen(colour, width));
    p.setBrush(Qt::NoBrush);
    QPainterPath box;
    box.moveTo(c - 0.5, c - 4.5);
    box.lineTo(c - 4.5, c - 4.5);
    box.lineTo(c - 4.5, c + 4.5);
    box.lineTo(c + 4.5, c + 4.5);
    box.lineTo(c + 4.5, c + 0.5);
    p.drawPath(box);
    p.drawLine(QPointF(c - 0.5, c + 0.5), QPointF(c + 5, c - 5));
    QPainterPath head;
    head.moveTo(c + 1.2, c - 5);
    head.lineTo(c + 5, c - 5);
    head.lineTo(c + 5, c - 1.2);
    p.drawPath(head);
}

// --- Icons (16 x 16). ---

void FeedFace(QPainter& p, const QColor& face, const QColor& mark) {
    p.setPen(Qt::NoPen);
    p.setBrush(face);
    p.drawRoundedRect(QRectF(1, 1, 14, 14), 3.2, 3.2);
    p.setBrush(mark);
    p.drawEllipse(QPointF(4.7, 11.3), 1.55, 1.55);
    p.setBrush(Qt::NoBrush);
    p.setPen(Pen(mark, 1.75));
    const QPointF centre(3.4, 12.6);
    for (double r : {5.0, 8.6}) {
        p.drawArc(QRectF(centre.x() - r, centre.y() - r, 2 * r, 2 * r), 0, 90 * 16);
    }
}

void Disc(QPainter& p, const QColor& colour) {
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawEllipse(QPointF(8, 8), 7, 7);
}

QPainterPath TagPath() {
    QPainterPath tag;
    tag.moveTo(2.5, 4.2);
    tag.quadTo(2.5, 3, 3.7, 3);
    tag.lineTo(9.3, 3);
    tag.lineTo(14.3, 8);
    tag.lineTo(9.3, 13);
    tag.lineTo(3.7, 13);
    tag.quadTo(2.5, 13, 2.5, 11.8);
    tag.closeSubpath();
    return tag;
}

QPainterPath PagePath() {
    QPainterPath page;
    page.moveTo(3.5, 1.5);
    page.lineTo(9.8, 1.5);
    page.lineTo(12.5, 4.2);
    page.lineTo(12.5, 14.5);
    page.lineTo(3.5, 14.5);
    page.closeSubpath();
    return page;
}

void Page(QPainter& p, const QColor& face, const QColor& edge, const QColor& lines) {
    p.setPen(Pen(edge, 1));
    p.setBrush(face);
    p.drawPath(PagePath());
    p.setBrush(Qt::NoBrush);
    QPainterPath fold;
    fold.moveTo(9.8, 1.5);
    fold.lineTo(9.8, 4.2);
    fold.lineTo(12.5, 4.2);
    p.drawPath(fold);
    p.setPen(Pen(lines, 1));
    for (double y : {7.0, 9.2, 11.4}) {
        p.drawLine(QPointF(5.6, y), QPointF(10.4, y));
    }
}

void Trash(QPainter& p, const QColor& colour, bool filled, const QColor& mark) {
    p.setPen(Pen(colour, kIconStroke));
    p.setBrush(Qt::NoBrush);
    p.drawLine(QPointF(2.8, 4), QPointF(13.2, 4));
    QPainterPath handle;
    handle.moveTo(6.2, 4);
    handle.lineTo(6.2, 2.4);
    handle.lineTo(9.8, 2.4);
    handle.lineTo(9.8, 4);
    p.drawPath(handle);
    QPainterPath body;
    body.moveTo(4, 5.6);
    body.lineTo(12, 5.6);
    body.lineTo(11.2, 14);
    body.lineTo(4.8, 14);
    body.closeSubpath();
    if (filled) {
        p.setBrush(colour);
    }
    p.drawPath(body);
    p.setPen(Pen(filled ? mark : colour, 1));
    for (double x : {6.5, 8.0, 9.5}) {
        p.drawLine(QPointF(x, 7.6), QPointF(x, 12));
    }
}

void Folder(QPainter& p, const QColor& face, const QColor& back, bool open) {
    p.setPen(Qt::NoPen);
    p.setBrush(back);
    QPainterPath rear;
    rear.moveTo(1.5, 3.8);
    rear.lineTo(6, 3.8);
    rear.lineTo(7.6, 5.4);
    rear.lineTo(14.5, 5.4);
    rear.lineTo(14.5, 13.5);
    rear.lineTo(1.5, 13.5);
    rear.closeSubpath();
    p.drawPath(rear);
    p.setBrush(face);
    if (open) {
        QPainterPath front;
        front.moveTo(3.6, 7.4);
        front.lineTo(15.6, 7.4);
        front.lineTo(13.4, 13.5);
        front.lineTo(1.2, 13.5);
        front.closeSubpath();
        p.drawPath(front);
    } else {
        p.drawRoundedRect(QRectF(1.5, 6.6, 13, 6.9), 1, 1);
    }
}

} // namespace

SkinArtist::SkinArtist(SkinTheme theme, QString folder)
    : m_theme(std::move(theme)), m_folder(std::move(folder)) {}

bool SkinArtist::Save(const QString& name, QSize size, const Drawing& draw) {
    for (int scale : kScales) {
        QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(scale, scale);
        draw(p);
        p.end();
        const QString file = m_folder + u'/' + name + (scale == 1 ? QString() : QStringLiteral("@2x")) +
                             QStringLiteral(".png");
        if (!image.save(file, "PNG")) {
            m_ok = false;
        }
    }
    return m_ok;
}

void SkinArtist::TopBand(QPainter& p, int width, int height, bool leftEdge, bool rightEdge) const {
    const SkinTheme& t = m_theme;
    Gradient(p, QRectF(0, 1, width, kCaption - 1), t.captionTop, t.captionBottom);
    Fill(p, 0, 1, width, 1, t.highlight);
    Fill(p, 0, kCaption - 1, width, 1, t.innerLine);
    Gradient(p, QRectF(0, kCaption, width, height - kCaption - 1), t.toolbarTop, t.toolbarBottom);
    Fill(p, 0, height - 1, width, 1, t.innerLine);
    Fill(p, 0, 0, width, 1, t.border);
    if (leftEdge) {
        Fill(p, 0, 0, 1, height, t.border);
    }
    if (rightEdge) {
        Fill(p, width - 1, 0, 1, height, t.border);
    }
}

void SkinArtist::BottomBand(QPainter& p, int width, bool leftEdge, bool rightEdge) const {
    const SkinTheme& t = m_theme;
    Gradient(p, QRectF(0, 1, width, kStatus - 2), t.statusTop, t.statusBottom);
    Fill(p, 0, 0, width, 1, t.innerLine);
    Fill(p, 0, kStatus - 1, width, 1, t.border);
    if (leftEdge) {
        Fill(p, 0, 0, 1, kStatus, t.border);
    }
    if (rightEdge) {
        Fill(p, width - 1, 0, 1, kStatus, t.border);
        p.setPen(Qt::NoPen);
        p.setBrush(t.grip);
        for (const QPointF& dot :
             {QPointF(5, kStatus - 4), QPointF(2, kStatus - 4), QPointF(5, kStatus - 7)}) {
            p.drawRect(QRectF(dot, QSizeF(1, 1)));
        }
    }
}

void SkinArtist::GripBand(QPainter& p, int width, int height, const QColor& top, const QColor& bottom) const {
    Fill(p, 0, 0, width, height, m_theme.frame);
    Fill(p, 0, 0, width, 1, top);
    Fill(p, 0, height - 1, width, 1, bottom);
    for (int x = 1; x < width; x += 4) {
        Fill(p, x, height / 2 - 1, 1, 1, m_theme.grip);
        Fill(p, x + 2, height / 2, 1, 1, m_theme.grip);
    }
}

bool SkinArtist::Frames() {
    const SkinTheme& t = m_theme;
    const int tile = kTile;
    for (const auto& [kind, top] :
         {std::pair{QStringLiteral("main"), kMainTop}, std::pair{QStringLiteral("channel"), kChannelTop}}) {
        const int h = top;
        Save(kind + QStringLiteral("-nw"), QSize(tile, h),
             [&](QPainter& p) { TopBand(p, tile, h, true, false); });
        Save(kind + QStringLiteral("-n"), QSize(tile, h),
             [&](QPainter& p) { TopBand(p, tile, h, false, false); });
        Save(kind + QStringLiteral("-ne"), QSize(tile, h),
             [&](QPainter& p) { TopBand(p, tile, h, false, true); });
    }
    Save(QStringLiteral("side-w"), QSize(kSide, tile), [&](QPainter& p) {
        Fill(p, 0, 0, kSide, tile, t.frame);
        Fill(p, 0, 0, 1, tile, t.border);
        Fill(p, kSide - 1, 0, 1, tile, t.innerLine);
    });
    Save(QStringLiteral("side-e"), QSize(kSide, tile), [&](QPainter& p) {
        Fill(p, 0, 0, kSide, tile, t.frame);
        Fill(p, 0, 0, 1, tile, t.innerLine);
        Fill(p, kSide - 1, 0, 1, tile, t.border);
    });
    Save(QStringLiteral("status-s"), QSize(tile, kStatus),
         [&](QPainter& p) { BottomBand(p, tile, false, false); });
    Save(QStringLiteral("status-sw"), QSize(tile, kStatus),
         [&](QPainter& p) { BottomBand(p, tile, true, false); });
    Save(QStringLiteral("status-se"), QSize(tile, kStatus),
         [&](QPainter& p) { BottomBand(p, tile, false, true); });

    // Thin frames: the preview panel, the ticker's item view and the dialogs.
    Save(QStringLiteral("line-h"), QSize(tile, 1), [&](QPainter& p) { Fill(p, 0, 0, tile, 1, t.border); });
    Save(QStringLiteral("line-v"), QSize(1, tile), [&](QPainter& p) { Fill(p, 0, 0, 1, tile, t.border); });
    Save(QStringLiteral("line-dot"), QSize(1, 1), [&](QPainter& p) { Fill(p, 0, 0, 1, 1, t.border); });
    Save(QStringLiteral("inner-h"), QSize(tile, 1),
         [&](QPainter& p) { Fill(p, 0, 0, tile, 1, t.innerLine); });
    Save(QStringLiteral("inner-v"), QSize(1, tile),
         [&](QPainter& p) { Fill(p, 0, 0, 1, tile, t.innerLine); });
    Save(QStringLiteral("inner-dot"), QSize(1, 1), [&](QPainter& p) { Fill(p, 0, 0, 1, 1, t.innerLine); });
    const auto accentTop = [&](QPainter& p, int width) {
        Fill(p, 0, 0, width, kAccentTop, t.accent);
        Fill(p, 0, 0, width, 1, t.border);
    };
    Save(QStringLiteral("accent-n"), QSize(tile, kAccentTop), [&](QPainter& p) { accentTop(p, tile); });
    Save(QStringLiteral("accent-corner"), QSize(1, kAccentTop),
         [&](QPainter& p) { Fill(p, 0, 0, 1, kAccentTop, t.border); });
    Save(QStringLiteral("grip-s"), QSize(tile, kGrip),
         [&](QPainter& p) { GripBand(p, tile, kGrip, t.innerLine, t.border); });
    Save(QStringLiteral("grip-corner"), QSize(1, kGrip),
         [&](QPainter& p) { Fill(p, 0, 0, 1, kGrip, t.border); });
    Save(QStringLiteral("panel-grip-s"), QSize(tile, kGrip),
         [&](QPainter& p) { GripBand(p, tile, kGrip, t.innerLine, t.innerLine); });
    Save(QStringLiteral("panel-grip-corner"), QSize(1, kGrip),
         [&](QPainter& p) { Fill(p, 0, 0, 1, kGrip, t.innerLine); });

    // The ticker: two halves of one gradient, so that a bar of any height shows both ends.
    const QColor middle = Mix(t.tickerTop, t.tickerBottom);
    Save(QStringLiteral("ticker-n"), QSize(tile, kTickerHalf), [&](QPainter& p) {
        Gradient(p, QRectF(0, 0, tile, kTickerHalf), t.tickerTop, middle);
        Fill(p, 0, 0, tile, 1, t.tickerLine);
        Fill(p, 0, 1, tile, 1, t.highlight);
    });
    Save(QStringLiteral("ticker-s"), QSize(tile, kTickerHalf), [&](QPainter& p) {
        Gradient(p, QRectF(0, 0, tile, kTickerHalf), middle, t.tickerBottom);
        Fill(p, 0, kTickerHalf - 1, tile, 1, t.tickerLine);
    });
    return m_ok;
}

void SkinArtist::ButtonFace(QPainter& p, int size, ButtonState state, bool closing) const {
    if (state == ButtonState::Normal) {
        return;
    }
    QColor face = state == ButtonState::Hover ? m_theme.hover : m_theme.pressed;
    if (closing) {
        face = state == ButtonState::Hover ? m_theme.closeHover : m_theme.closePressed;
    }
    p.setPen(Qt::NoPen);
    p.setBrush(face);
    const double radius = size > kTickerButton ? kRadius : kRadius - 1;
    p.drawRoundedRect(QRectF(0, 0, size, size), radius, radius);
}

QColor SkinArtist::GlyphColour(ButtonState state, bool closing) const {
    if (state == ButtonState::Normal) {
        return m_theme.glyph;
    }
    return closing ? m_theme.closeGlyph : m_theme.glyphHover;
}

bool SkinArtist::Buttons() {
    struct Button {
        QString name;
        int size;
        bool closing;
        std::function<void(QPainter&, double, const QColor&)> glyph;
    };
    const std::vector<Button> buttons = {
        {QStringLiteral("btn-close"), kButton, true,
         [](QPainter& p, double m, const QColor& g) { Cross(p, m, 4, g); }},
        {QStringLiteral("btn-min"), kButton, false, Minimise},
        {QStringLiteral("btn-max"), kButton, false, Maximise},
        {QStringLiteral("btn-frame"), kButton, false, WindowFrame},
        {QStringLiteral("btn-profiles"), kButton, false, Person},
        {QStringLiteral("btn-add"), kButton, false, Plus},
        {QStringLiteral("btn-first"), kButton, false,
         [](QPainter& p, double m, const QColor& g) {
             Bar(p, m - 4, m, g);
             Chevron(p, m, 1, true, g);
         }},
        {QStringLiteral("btn-prev"), kButton, false,
         [](QPainter& p, double m, const QColor& g) { Chevron(p, m, 0, true, g); }},
        {QStringLiteral("btn-next"), kButton, false,
         [](QPainter& p, double m, const QColor& g) { Chevron(p, m, 0, false, g); }},
        {QStringLiteral("btn-last"), kButton, false,
         [](QPainter& p, double m, const QColor& g) {
             Chevron(p, m, -1, false, g);
             Bar(p, m + 4, m, g);
         }},
        {QStringLiteral("tck-prev"), kTickerButton, false,
         [](QPainter& p, double m, const QColor& g) { Chevron(p, m, -0.5, true, g); }},
        {QStringLiteral("tck-next"), kTickerButton, false,
         [](QPainter& p, double m, const QColor& g) { Chevron(p, m, 0.5, false, g); }},
        {QStringLiteral("tck-pause"), kTickerButton, false, Pause},
        {QStringLiteral("tck-play"), kTickerButton, false, Play},
        {QStringLiteral("tck-menu"), kTickerButton, false, Menu},
        {QStringLiteral("tck-link"), kTickerButton, false,
         [](QPainter& p, double m, const QColor& g) { ExternalLink(p, m, g, 1.4); }},
        {QStringLiteral("tck-close"), kTickerButton, true,
         [](QPainter& p, double m, const QColor& g) { Cross(p, m, 3.5, g); }},
    };
    for (const Button& button : buttons) {
        const double centre = button.size / 2.0;
        for (const auto& [suffix, state] : {std::pair{QString(), ButtonState::Normal},
                                            std::pair{QStringLiteral("-hover"), ButtonState::Hover},
                                            std::pair{QStringLiteral("-down"), ButtonState::Pressed}}) {
            Save(button.name + suffix, QSize(button.size, button.size), [&](QPainter& p) {
                ButtonFace(p, button.size, state, button.closing);
                const double shift = state == ButtonState::Pressed ? 0.5 : 0;
                p.translate(shift, shift);
                button.glyph(p, centre, GlyphColour(state, button.closing));
            });
        }
    }
    return m_ok;
}

bool SkinArtist::Icons(const QString& treePrefix, const QString& listPrefix, bool openFolder) {
    const SkinTheme& t = m_theme;
    const QSize size(kIcon, kIcon);
    const QColor white(Qt::white);
    const auto tree = [&](const QString& key, const Drawing& draw) { Save(treePrefix + key, size, draw); };
    const auto list = [&](const QString& key, const Drawing& draw) { Save(listPrefix + key, size, draw); };

    tree(QStringLiteral("unread"), [&](QPainter& p) { FeedFace(p, t.feed, t.iconMark); });
    tree(QStringLiteral("read"), [&](QPainter& p) { FeedFace(p, t.feedRead, t.iconMark); });
    tree(QStringLiteral("newitems"), [&](QPainter& p) {
        FeedFace(p, t.feed, t.iconMark);
        p.setPen(QPen(t.page, 1.2));
        p.setBrush(t.badge);
        p.drawEllipse(QPointF(12.3, 3.7), 3.3, 3.3);
    });
    tree(QStringLiteral("itemunread"), [&](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(t.help);
        p.drawEllipse(QPointF(8, 8), 3.6, 3.6);
    });
    tree(QStringLiteral("collapse"), [&](QPainter& p) { Folder(p, t.folder, t.folderDark, false); });
    if (openFolder) {
        tree(QStringLiteral("expanded"), [&](QPainter& p) { Folder(p, t.folder, t.folderDark, true); });
    }
    tree(QStringLiteral("err"), [&](QPainter& p) {
        Disc(p, t.error);
        p.setBrush(white);
        p.drawRoundedRect(QRectF(7.1, 3.6, 1.8, 6), 0.9, 0.9);
        p.drawEllipse(QPointF(8, 11.9), 1.1, 1.1);
    });
    tree(QStringLiteral("help"), [&](QPainter& p) {
        Disc(p, t.help);
        p.setPen(Pen(white, 1.7));
        p.setBrush(Qt::NoBrush);
        QPainterPath hook;
        const QRectF round(5.7, 3.6, 4.6, 4.6);
        hook.arcMoveTo(round, 160);
        hook.arcTo(round, 160, -220);
        hook.lineTo(8, 9.6);
        p.drawPath(hook);
        p.setPen(Qt::NoPen);
        p.setBrush(white);
        p.drawEllipse(QPointF(8, 12.2), 1.05, 1.05);
    });
    tree(QStringLiteral("flagged"), [&](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(t.tag);
        p.drawPath(TagPath());
        p.setBrush(t.page);
        p.drawEllipse(QPointF(5.4, 8), 1.35, 1.35);
    });
    tree(QStringLiteral("reload"), [&](QPainter& p) {
        p.setPen(Pen(t.help, 1.9));
        p.setBrush(Qt::NoBrush);
        const QRectF round(2.6, 2.6, 10.8, 10.8);
        p.drawArc(round, 100 * 16, 290 * 16);
        p.setPen(Qt::NoPen);
        p.setBrush(t.help);
        QPainterPath head;
        head.moveTo(6.2, 0.6);
        head.lineTo(10.2, 3.1);
        head.lineTo(6.0, 5.4);
        head.closeSubpath();
        p.drawPath(head);
    });

    list(QStringLiteral("item"), [&](QPainter& p) { Page(p, t.page, t.pageEdge, t.pageLines); });
    list(QStringLiteral("itemex"), [&](QPainter& p) { Page(p, t.page, t.accent, t.accent); });
    list(QStringLiteral("notag"), [&](QPainter& p) {
        p.setPen(Pen(t.faded, kIconStroke));
        p.setBrush(Qt::NoBrush);
        p.drawPath(TagPath());
        p.drawEllipse(QPointF(5.4, 8), 1.2, 1.2);
    });
    list(QStringLiteral("elements"), [&](QPainter& p) {
        p.setPen(Pen(t.pageEdge, 1));
        p.setBrush(t.page);
        p.drawRoundedRect(QRectF(2.5, 2.5, 11, 11), 2, 2);
        for (double y : {5.5, 8.0, 10.5}) {
            Fill(p, 4.5, y - 0.5, 1.2, 1.2, t.accent);
            p.setPen(Pen(t.pageLines, 1));
            p.drawLine(QPointF(7, y), QPointF(11.5, y));
        }
    });
    list(QStringLiteral("link"), [&](QPainter& p) { ExternalLink(p, 8, t.help, 1.3); });
    list(QStringLiteral("del"), [&](QPainter& p) { Trash(p, t.trash, true, t.page); });
    list(QStringLiteral("nodel"), [&](QPainter& p) { Trash(p, t.faded, false, t.page); });
    return m_ok;
}

bool SkinArtist::DrawSkin() {
    Frames();
    Buttons();
    // A skin's group keywords set both group icons, so a skin has one folder picture.
    Icons(QStringLiteral("icon-"), QStringLiteral("icon-"), false);
    return m_ok;
}

bool SkinArtist::DrawBuiltInIcons() {
    return Icons(QStringLiteral("tree-"), QStringLiteral("list-"), true);
}
