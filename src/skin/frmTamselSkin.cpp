// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/frmTamselSkin.h"

#include "platform/CRegSettings.h"
#include "skin/SkinColor.h"
#include "skin/SkinHost.h"
#include "skin/SkinImageListTarget.h"
#include "skin/SkinNumber.h"
#include "skin/SkinSurface.h"
#include "skin/SkinWindow.h"
#include "skin/frmSkinEntity.h"

#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPointer>

#include <limits>

namespace {

constexpr qint64 kMaxSkinFileBytes = 1024 * 1024;

constexpr int kDefaultFilterTop = 5;
constexpr int kDefaultFilterLeft = 10;
constexpr int kDefaultFilterWidth = 100;
constexpr int kDefaultSearchTop = 5;
constexpr int kDefaultSearchLeft = 120;
constexpr int kDefaultSearchWidth = 100;
constexpr quint32 kWhite = 0xFFFFFF;
constexpr quint32 kBlack = 0;
constexpr quint32 kBlue = 0xFF0000;
constexpr quint32 kDefaultGridColorOdd = 0xFFCCCC;
constexpr quint32 kDefaultTreeColor = 0xFFB29D;
constexpr double kDefaultFontSize = 10;
constexpr int kDefaultChannelTopBand = 30;
constexpr int kDefaultGripBand = 5;
constexpr int kTreeIconSize = 16;

// Default font slots (0-based) of the tree, the grid and the ticker.
constexpr int kDefaultTreeFont = 0;
constexpr int kDefaultTickerFont = 1;
constexpr int kDefaultGridFont = 2;

const QString kLastKey = QStringLiteral("last");
const QString kDefaultStylesheet = QStringLiteral("rss.xsl");

const std::array<QString, frmTamselSkin::kListIcons> kListIconNames = {
    QStringLiteral("item"), QStringLiteral("itemex"), QStringLiteral("notag"), QStringLiteral("elements"),
    QStringLiteral("link"), QStringLiteral("del"),    QStringLiteral("nodel"),
};

QString BuiltInIconPath(const QString& group, const QString& name) {
    return QStringLiteral(":/skin/icons/") + group + u'-' + name + QStringLiteral(".png");
}

bool IsBlank(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\r';
}

QString TrimBlanks(const QString& text) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && IsBlank(text[begin])) {
        ++begin;
    }
    while (end > begin && IsBlank(text[end - 1])) {
        --end;
    }
    return text.mid(begin, end - begin);
}

bool IsPlainFileName(const QString& name) {
    return !name.isEmpty() && !name.contains(u'/') && !name.contains(u'\\') && name != QStringLiteral(".") &&
           name != QStringLiteral("..");
}

} // namespace

// Outside the anonymous namespace: the macro declares the resource's global initialiser.
static void InitResources() {
    Q_INIT_RESOURCE(SkinIcons);
}

// Reads the lines of one skin file into the engine, keeping the current font, frame kind and
// entity that the "define..." lines choose.
class frmTamselSkin::Reader final {
public:
    explicit Reader(frmTamselSkin& skin) : m_skin(skin) {}

    // Acts on one keyword; false, with the reason, when the line stops the load.
    bool Line(const QString& keyword, const QString& argument, QString* reason);

private:
    using Handler = bool (*)(Reader&, const QString& argument, QString* reason);
    static const QHash<QString, Handler>& Handlers();

    bool Integer(const QString& argument, qint64 minimum, qint64 maximum, qint64* value,
                 QString* reason) const;
    bool Int16(const QString& argument, int* value, QString* reason) const;
    bool Colour(const QString& argument, quint32* colour, QString* reason) const;
    bool FontNumber(const QString& argument, int* slot, QString* reason) const;
    bool DefinedFont(const QString& argument, const clsTamselFont** font, QString* reason) const;
    bool Picture(const QString& name, SkinPicture* picture, QString* reason) const;
    bool CurrentEntity(frmSkinEntity** entity, QString* reason) const;
    clsTamselFont& CurrentFont() const;
    SkinFrame& CurrentFrame() const { return m_skin.m_frames.at(m_kind); }
    bool FramePiece(SkinFrame::PieceIndex index, const QString& argument, QString* reason);
    bool FrameSize(SkinFrame::PieceIndex index, bool width, const QString& argument, QString* reason);
    bool TreeIcon(const QStringList& keys, const QString& argument, QString* reason);
    bool ListIcon(ListIcon icon, const QString& argument, QString* reason);

    frmTamselSkin& m_skin;
    int m_font = 0;
    int m_kind = 0;
    int m_entity = 0;
};

bool frmTamselSkin::Reader::Line(const QString& keyword, const QString& argument, QString* reason) {
    const Handler handler = Handlers().value(keyword);
    return handler ? handler(*this, argument, reason) : true;
}

bool frmTamselSkin::Reader::Integer(const QString& argument, qint64 minimum, qint64 maximum, qint64* value,
                                    QString* reason) const {
    const qint64 number = SkinNumber::Round(SkinNumber::Leading(argument));
    if (number < minimum || number > maximum) {
        *reason =
            QStringLiteral("The number %1 is out of range (%2 to %3)").arg(number).arg(minimum).arg(maximum);
        return false;
    }
    *value = number;
    return true;
}

bool frmTamselSkin::Reader::Int16(const QString& argument, int* value, QString* reason) const {
    qint64 number = 0;
    if (!Integer(argument, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max(), &number,
                 reason)) {
        return false;
    }
    *value = int(number);
    return true;
}

bool frmTamselSkin::Reader::Colour(const QString& argument, quint32* colour, QString* reason) const {
    qint64 number = 0;
    if (!Integer(argument, std::numeric_limits<qint32>::min(), std::numeric_limits<quint32>::max(), &number,
                 reason)) {
        return false;
    }
    *colour = quint32(number);
    return true;
}

bool frmTamselSkin::Reader::FontNumber(const QString& argument, int* slot, QString* reason) const {
    qint64 number = 0;
    if (!Integer(argument, 1, kFontSlots, &number, reason)) {
        return false;
    }
    *slot = int(number - 1);
    return true;
}

bool frmTamselSkin::Reader::DefinedFont(const QString& argument, const clsTamselFont** font,
                                        QString* reason) const {
    int slot = 0;
    if (!FontNumber(argument, &slot, reason)) {
        return false;
    }
    *font = m_skin.m_fonts.at(slot).get();
    if (!*font) {
        *reason = QStringLiteral("Font %1 is not defined").arg(slot + 1);
        return false;
    }
    return true;
}

bool frmTamselSkin::Reader::Picture(const QString& name, SkinPicture* picture, QString* reason) const {
    const QString path = m_skin.PlainFilePath(name);
    if (path.isEmpty()) {
        *reason = QStringLiteral("\"%1\" is not a plain file name of the skin folder").arg(name);
        return false;
    }
    QString why;
    *picture = SkinPicture::Load(path, &why);
    if (picture->IsNull()) {
        *reason = QStringLiteral("Cannot load picture \"%1\": %2").arg(name, why);
        return false;
    }
    return true;
}

bool frmTamselSkin::Reader::CurrentEntity(frmSkinEntity** entity, QString* reason) const {
    *entity = m_skin.m_entities.at(m_entity).get();
    if (!*entity) {
        *reason = QStringLiteral("No entity has been defined (defineentity) before this line");
        return false;
    }
    return true;
}

clsTamselFont& frmTamselSkin::Reader::CurrentFont() const {
    std::unique_ptr<clsTamselFont>& font = m_skin.m_fonts.at(m_font);
    if (!font) {
        font = std::make_unique<clsTamselFont>();
    }
    return *font;
}

bool frmTamselSkin::Reader::FramePiece(SkinFrame::PieceIndex index, const QString& argument,
                                       QString* reason) {
    SkinPicture picture;
    if (!Picture(argument, &picture, reason)) {
        return false;
    }
    CurrentFrame().At(index).SetPicture(picture);
    return true;
}

bool frmTamselSkin::Reader::FrameSize(SkinFrame::PieceIndex index, bool width, const QString& argument,
                                      QString* reason) {
    int size = 0;
    if (!Int16(argument, &size, reason)) {
        return false;
    }
    SkinFrame::Piece& piece = CurrentFrame().At(index);
    (width ? piece.Width : piece.Height) = size;
    return true;
}

bool frmTamselSkin::Reader::TreeIcon(const QStringList& keys, const QString& argument, QString* reason) {
    if (m_skin.m_imageList) {
        for (const QString& key : keys) {
            m_skin.m_imageList->RemoveImage(key);
        }
    }
    SkinPicture picture;
    if (!Picture(argument, &picture, reason)) {
        return false;
    }
    for (const QString& key : keys) {
        m_skin.m_treeIcons.insert(key, picture);
    }
    return true;
}

bool frmTamselSkin::Reader::ListIcon(frmTamselSkin::ListIcon icon, const QString& argument, QString* reason) {
    SkinPicture picture;
    if (!Picture(argument, &picture, reason)) {
        return false;
    }
    m_skin.m_listIcons.at(size_t(icon)) = picture;
    return true;
}

const QHash<QString, frmTamselSkin::Reader::Handler>& frmTamselSkin::Reader::Handlers() {
    using PI = SkinFrame::PieceIndex;
    // Entity keywords share this shape: the current entity must exist.
    static const auto withEntity = [](Reader& r, QString* reason, auto&& act) {
        frmSkinEntity* entity = nullptr;
        if (!r.CurrentEntity(&entity, reason)) {
            return false;
        }
        return act(*entity);
    };
    static const QHash<QString, Handler> handlers = {
        {QStringLiteral("xslfile"),
         [](Reader& r, const QString& a, QString*) {
             r.m_skin.m_xslFile = r.m_skin.StylesheetPath(a);
             return true;
         }},
        {QStringLiteral("definefont"),
         [](Reader& r, const QString& a, QString* reason) {
             int slot = 0;
             if (!r.FontNumber(a, &slot, reason)) {
                 return false;
             }
             r.m_skin.m_fonts.at(slot) = std::make_unique<clsTamselFont>();
             r.m_font = slot;
             return true;
         }},
        {QStringLiteral("face"),
         [](Reader& r, const QString& a, QString*) {
             r.CurrentFont().Name = a;
             return true;
         }},
        {QStringLiteral("size"),
         [](Reader& r, const QString& a, QString*) {
             r.CurrentFont().Size = SkinNumber::Leading(a);
             return true;
         }},
        {QStringLiteral("bold"),
         [](Reader& r, const QString& a, QString*) {
             r.CurrentFont().Bold = SkinNumber::Boolean(a);
             return true;
         }},
        {QStringLiteral("italic"),
         [](Reader& r, const QString& a, QString*) {
             r.CurrentFont().Italic = SkinNumber::Boolean(a);
             return true;
         }},
        {QStringLiteral("strike"),
         [](Reader& r, const QString& a, QString*) {
             r.CurrentFont().StrikeThrough = SkinNumber::Boolean(a);
             return true;
         }},
        {QStringLiteral("underline"),
         [](Reader& r, const QString& a, QString*) {
             r.CurrentFont().Underline = SkinNumber::Boolean(a);
             return true;
         }},
        {QStringLiteral("outline"),
         [](Reader& r, const QString& a, QString*) {
             r.CurrentFont().Outline = SkinNumber::Boolean(a);
             return true;
         }},
        {QStringLiteral("shadow"),
         [](Reader& r, const QString& a, QString*) {
             r.CurrentFont().Shadow = SkinNumber::Boolean(a);
             return true;
         }},
        {QStringLiteral("color"),
         [](Reader& r, const QString& a, QString* reason) { return r.Colour(a, &r.CurrentFont().Color, reason); }},
        {QStringLiteral("shadowcolor"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.Colour(a, &r.CurrentFont().ShadowColor, reason);
         }},
        {QStringLiteral("defineframe"),
         [](Reader& r, const QString& a, QString*) {
             r.m_kind = KindOf(a);
             return true;
         }},
        {QStringLiteral("framenw"),
         [](Reader& r, const QString& a, QString* reason) { return r.FramePiece(PI::TopLeft, a, reason); }},
        {QStringLiteral("framene"),
         [](Reader& r, const QString& a, QString* reason) { return r.FramePiece(PI::TopRight, a, reason); }},
        {QStringLiteral("framen"),
         [](Reader& r, const QString& a, QString* reason) { return r.FramePiece(PI::Top, a, reason); }},
        {QStringLiteral("framensize"),
         [](Reader& r, const QString& a, QString* reason) { return r.FrameSize(PI::Top, false, a, reason); }},
        {QStringLiteral("framew"),
         [](Reader& r, const QString& a, QString* reason) { return r.FramePiece(PI::Left, a, reason); }},
        {QStringLiteral("framewsize"),
         [](Reader& r, const QString& a, QString* reason) { return r.FrameSize(PI::Left, true, a, reason); }},
        {QStringLiteral("framee"),
         [](Reader& r, const QString& a, QString* reason) { return r.FramePiece(PI::Right, a, reason); }},
        {QStringLiteral("frameesize"),
         [](Reader& r, const QString& a, QString* reason) { return r.FrameSize(PI::Right, true, a, reason); }},
        {QStringLiteral("frames"),
         [](Reader& r, const QString& a, QString* reason) { return r.FramePiece(PI::Bottom, a, reason); }},
        {QStringLiteral("framessize"),
         [](Reader& r, const QString& a, QString* reason) { return r.FrameSize(PI::Bottom, false, a, reason); }},
        {QStringLiteral("framesw"),
         [](Reader& r, const QString& a, QString* reason) { return r.FramePiece(PI::BottomLeft, a, reason); }},
        {QStringLiteral("framese"),
         [](Reader& r, const QString& a, QString* reason) { return r.FramePiece(PI::BottomRight, a, reason); }},
        {QStringLiteral("framecolor"),
         [](Reader& r, const QString& a, QString* reason) {
             quint32 colour = 0;
             if (!r.Colour(a, &colour, reason)) {
                 return false;
             }
             r.CurrentFrame().SetColor(colour);
             return true;
         }},
        {QStringLiteral("defineentity"),
         [](Reader& r, const QString& a, QString* reason) {
             qint64 number = 0;
             if (!r.Integer(a, 1, kEntitySlots, &number, reason)) {
                 return false;
             }
             r.m_entity = int(number - 1);
             r.m_skin.m_entities.at(r.m_entity) = std::make_unique<frmSkinEntity>(r.m_skin, r.m_skin.m_clock);
             return true;
         }},
        {QStringLiteral("image"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 SkinPicture picture;
                 if (!r.Picture(a, &picture, reason)) {
                     return false;
                 }
                 e.img = e.imgMM = e.imgMD = picture;
                 return true;
             });
         }},
        {QStringLiteral("imagemousemove"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 SkinPicture picture;
                 if (!r.Picture(a, &picture, reason)) {
                     return false;
                 }
                 e.imgMM = e.imgMD = picture;
                 return true;
             });
         }},
        {QStringLiteral("imagemousedown"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) { return r.Picture(a, &e.imgMD, reason); });
         }},
        {QStringLiteral("text"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.lbl.Caption = e.lblMM.Caption = e.lblMD.Caption = a;
                 return true;
             });
         }},
        {QStringLiteral("textmousedown"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.lblMD.Caption = e.lblMM.Caption = a;
                 return true;
             });
         }},
        {QStringLiteral("textmousemove"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.lblMM.Caption = a;
                 return true;
             });
         }},
        {QStringLiteral("font"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 const clsTamselFont* font = nullptr;
                 if (!r.DefinedFont(a, &font, reason)) {
                     return false;
                 }
                 e.lbl.SetFont(*font, true);
                 return true;
             });
         }},
        {QStringLiteral("fontmousemove"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 const clsTamselFont* font = nullptr;
                 if (!r.DefinedFont(a, &font, reason)) {
                     return false;
                 }
                 e.lblMM.SetFont(*font, false);
                 return true;
             });
         }},
        {QStringLiteral("fontmousedown"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 const clsTamselFont* font = nullptr;
                 if (!r.DefinedFont(a, &font, reason)) {
                     return false;
                 }
                 e.lblMD.SetFont(*font, false);
                 return true;
             });
         }},
        {QStringLiteral("function"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.sFunction = a;
                 return true;
             });
         }},
        {QStringLiteral("window"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.iWindow = KindOf(a);
                 return true;
             });
         }},
        {QStringLiteral("hide"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.bHide = SkinNumber::Boolean(a);
                 return true;
             });
         }},
        {QStringLiteral("top"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.SetTop(SkinNumber::Leading(a));
                 return true;
             });
         }},
        {QStringLiteral("left"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.SetLeft(SkinNumber::Leading(a));
                 return true;
             });
         }},
        {QStringLiteral("center"),
         [](Reader& r, const QString& a, QString* reason) {
             return withEntity(r, reason, [&](frmSkinEntity& e) {
                 e.bCenter = SkinNumber::Boolean(a);
                 return true;
             });
         }},
        {QStringLiteral("filtertop"),
         [](Reader& r, const QString& a, QString* reason) { return r.Int16(a, &r.m_skin.m_filterTop, reason); }},
        {QStringLiteral("filterleft"),
         [](Reader& r, const QString& a, QString* reason) { return r.Int16(a, &r.m_skin.m_filterLeft, reason); }},
        {QStringLiteral("filterwidth"),
         [](Reader& r, const QString& a, QString* reason) { return r.Int16(a, &r.m_skin.m_filterWidth, reason); }},
        {QStringLiteral("searchtop"),
         [](Reader& r, const QString& a, QString* reason) { return r.Int16(a, &r.m_skin.m_searchTop, reason); }},
        {QStringLiteral("searchleft"),
         [](Reader& r, const QString& a, QString* reason) { return r.Int16(a, &r.m_skin.m_searchLeft, reason); }},
        {QStringLiteral("searchwidth"),
         [](Reader& r, const QString& a, QString* reason) { return r.Int16(a, &r.m_skin.m_searchWidth, reason); }},
        {QStringLiteral("gridfont"),
         [](Reader& r, const QString& a, QString* reason) { return r.FontNumber(a, &r.m_skin.m_gridFont, reason); }},
        {QStringLiteral("gridcolorodd"),
         [](Reader& r, const QString& a, QString* reason) { return r.Colour(a, &r.m_skin.m_gridColorOdd, reason); }},
        {QStringLiteral("gridcoloreven"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.Colour(a, &r.m_skin.m_gridColorEven, reason);
         }},
        {QStringLiteral("tickerfont"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.FontNumber(a, &r.m_skin.m_tickerFont, reason);
         }},
        {QStringLiteral("tickerfadecolor"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.Colour(a, &r.m_skin.m_tickerFadeColor, reason);
         }},
        {QStringLiteral("treefont"),
         [](Reader& r, const QString& a, QString* reason) { return r.FontNumber(a, &r.m_skin.m_treeFont, reason); }},
        {QStringLiteral("treecolor"),
         [](Reader& r, const QString& a, QString* reason) { return r.Colour(a, &r.m_skin.m_treeColor, reason); }},
        {QStringLiteral("iconitem"),
         [](Reader& r, const QString& a, QString* reason) { return r.ListIcon(ListIcon::Item, a, reason); }},
        {QStringLiteral("iconitemex"),
         [](Reader& r, const QString& a, QString* reason) { return r.ListIcon(ListIcon::ItemEx, a, reason); }},
        {QStringLiteral("iconnotag"),
         [](Reader& r, const QString& a, QString* reason) { return r.ListIcon(ListIcon::NoTag, a, reason); }},
        {QStringLiteral("iconelements"),
         [](Reader& r, const QString& a, QString* reason) { return r.ListIcon(ListIcon::Elements, a, reason); }},
        {QStringLiteral("iconlink"),
         [](Reader& r, const QString& a, QString* reason) { return r.ListIcon(ListIcon::Link, a, reason); }},
        {QStringLiteral("icondel"),
         [](Reader& r, const QString& a, QString* reason) { return r.ListIcon(ListIcon::Del, a, reason); }},
        {QStringLiteral("iconnodel"),
         [](Reader& r, const QString& a, QString* reason) { return r.ListIcon(ListIcon::NoDel, a, reason); }},
        {QStringLiteral("iconunread"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.TreeIcon({QStringLiteral("unread")}, a, reason);
         }},
        {QStringLiteral("iconnewitems"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.TreeIcon({QStringLiteral("newitems")}, a, reason);
         }},
        {QStringLiteral("iconitemunread"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.TreeIcon({QStringLiteral("itemunread")}, a, reason);
         }},
        {QStringLiteral("iconread"),
         [](Reader& r, const QString& a, QString* reason) { return r.TreeIcon({QStringLiteral("read")}, a, reason); }},
        {QStringLiteral("icondownload"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.TreeIcon({QStringLiteral("reload")}, a, reason);
         }},
        {QStringLiteral("iconhelp"),
         [](Reader& r, const QString& a, QString* reason) { return r.TreeIcon({QStringLiteral("help")}, a, reason); }},
        {QStringLiteral("icontag"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.TreeIcon({QStringLiteral("flagged")}, a, reason);
         }},
        {QStringLiteral("iconerror"),
         [](Reader& r, const QString& a, QString* reason) { return r.TreeIcon({QStringLiteral("err")}, a, reason); }},
        {QStringLiteral("icongroup"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.TreeIcon({QStringLiteral("expanded"), QStringLiteral("collapse")}, a, reason);
         }},
        {QStringLiteral("icongroupopen"),
         [](Reader& r, const QString& a, QString* reason) {
             return r.TreeIcon({QStringLiteral("expanded"), QStringLiteral("collapse")}, a, reason);
         }},
    };
    return handlers;
}

frmTamselSkin::frmTamselSkin(CRegSettings& settings, Paths paths, Clock& clock, SkinHost& host,
                             QObject* parent)
    : QObject(parent), m_settings(settings), m_paths(std::move(paths)), m_clock(clock), m_host(host) {
    InitResources();
    for (const QString& key : TreeIconKeys()) {
        m_defaultTreeIcons.insert(key, SkinPicture::Load(BuiltInIconPath(QStringLiteral("tree"), key)));
    }
    for (size_t i = 0; i < kListIconNames.size(); ++i) {
        m_defaultListIcons.at(i) =
            SkinPicture::Load(BuiltInIconPath(QStringLiteral("list"), kListIconNames.at(i)));
    }
    QImage last(kTreeIconSize, kTreeIconSize, QImage::Format_ARGB32_Premultiplied);
    last.fill(Qt::transparent);
    m_lastImage = SkinPicture(last);
    m_skinFolder = m_paths.SkinFolder(QString());
    ResetDefaults();
}

frmTamselSkin::~frmTamselSkin() = default;

int frmTamselSkin::KindOf(const QString& name) {
    static const QStringList names = {QStringLiteral("main"),       QStringLiteral("channel"),
                                      QStringLiteral("item"),       QStringLiteral("ticker"),
                                      QStringLiteral("tickeritem"), QStringLiteral("dialog")};
    const qsizetype index = names.indexOf(name.toLower());
    return index < 0 ? KindMain : int(index);
}

const QStringList& frmTamselSkin::TreeIconKeys() {
    static const QStringList keys = {
        QStringLiteral("unread"), QStringLiteral("newitems"), QStringLiteral("itemunread"),
        QStringLiteral("read"),   QStringLiteral("collapse"), QStringLiteral("expanded"),
        QStringLiteral("err"),    QStringLiteral("flagged"),  QStringLiteral("help"),
        QStringLiteral("reload"),
    };
    return keys;
}

QString frmTamselSkin::PlainFilePath(const QString& name) const {
    return IsPlainFileName(name) ? m_skinFolder + u'/' + name : QString();
}

QString frmTamselSkin::StylesheetPath(const QString& name) const {
    const QString path = PlainFilePath(name);
    if (!path.isEmpty() && QFileInfo(path).isFile()) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly)) {
            return path;
        }
    }
    return m_paths.ResourceFile(kDefaultStylesheet);
}

void frmTamselSkin::ResetDefaults() {
    ++m_generation;
    m_filterTop = kDefaultFilterTop;
    m_filterLeft = kDefaultFilterLeft;
    m_filterWidth = kDefaultFilterWidth;
    m_searchTop = kDefaultSearchTop;
    m_searchLeft = kDefaultSearchLeft;
    m_searchWidth = kDefaultSearchWidth;

    for (int kind : {KindMain, KindChannel, KindItem, KindTickerItem, KindDialog}) {
        m_frames.at(kind).SetColor(SkinColor::kButtonFace);
    }
    m_frames.at(KindTicker).SetColor(kBlue);

    m_gridColorEven = kWhite;
    m_gridColorOdd = kDefaultGridColorOdd;

    for (auto& font : m_fonts) {
        font.reset();
    }
    for (auto& entity : m_entities) {
        entity.reset();
    }
    const auto makeFont = [](const QString& name, bool bold, quint32 colour) {
        auto font = std::make_unique<clsTamselFont>();
        font->Name = name;
        font->Size = kDefaultFontSize;
        font->Bold = bold;
        font->Color = colour;
        return font;
    };
    m_fonts.at(0) = makeFont(QStringLiteral("tahoma"), true, kBlack);
    m_fonts.at(1) = makeFont(QStringLiteral("MS Sans Serif"), false, kWhite);
    m_fonts.at(2) = makeFont(QStringLiteral("MS Sans Serif"), false, kBlack);

    m_treeFont = kDefaultTreeFont;
    m_gridFont = kDefaultGridFont;
    m_tickerFont = kDefaultTickerFont;
    m_tickerFadeColor = kBlue;
    m_treeColor = kDefaultTreeColor;

    m_xslFile = StylesheetPath(kDefaultStylesheet);

    for (int kind = KindMain; kind <= KindDialog; ++kind) {
        m_frames.at(kind).ClearPieces();
    }
    m_frames.at(KindChannel).At(SkinFrame::Top).Height = kDefaultChannelTopBand;
    m_frames.at(KindItem).At(SkinFrame::Bottom).Height = kDefaultGripBand;
    m_frames.at(KindTickerItem).At(SkinFrame::Bottom).Height = kDefaultGripBand;

    m_treeIcons = m_defaultTreeIcons;
    m_listIcons = m_defaultListIcons;
}

void frmTamselSkin::LoadSkin() {
    m_skinName = m_settings.GetSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QString());
    m_skinFolder = m_paths.SkinFolder(m_skinName);
    ResetDefaults();

    if (!m_skinName.isEmpty()) {
        const QString failure = QStringLiteral("Error Loading Skin File: ") + m_skinName;
        // A name that is not a plain folder name would lead outside the skin folders.
        if (!IsPlainFileName(m_skinName)) {
            m_host.ShowMessage(failure);
            return;
        }
        QFile file(m_skinFolder + QStringLiteral("/skin.txt"));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text) || file.size() > kMaxSkinFileBytes) {
            m_host.ShowMessage(failure);
            return;
        }
        QString text = QString::fromUtf8(file.read(kMaxSkinFileBytes));
        file.close();
        if (text.startsWith(QChar(QChar::ByteOrderMark))) {
            text.remove(0, 1);
        }
        Reader reader(*this);
        const QStringList lines = text.split(u'\n');
        for (const QString& raw : lines) {
            const QString line = TrimBlanks(raw);
            if (line.isEmpty() || line.startsWith(u';')) {
                continue;
            }
            qsizetype blank = 0;
            while (blank < line.size() && !IsBlank(line[blank])) {
                ++blank;
            }
            if (blank == line.size()) {
                continue;
            }
            QString reason;
            if (!reader.Line(line.left(blank).toLower(), TrimBlanks(line.mid(blank + 1)), &reason)) {
                m_host.ShowMessage(failure + u'\n' + QStringLiteral("skin.txt - Error On Line: ") + line +
                                   u'\n' + QStringLiteral("Error Return: ") + reason);
                return;
            }
        }
    }

    UpdateImageList();
    GetXSLFilename();
    Q_EMIT SkinLoaded();
}

void frmTamselSkin::UpdateImageList() {
    if (!m_imageList) {
        return;
    }
    for (const QString& key : TreeIconKeys()) {
        if (!m_imageList->HasImage(key)) {
            m_imageList->AddImage(key, TreeIcon(key));
        }
    }
    m_imageList->AddImage(kLastKey, m_lastImage);
}

QString frmTamselSkin::GetXSLFilename() {
    QString error;
    m_itemStylesheet = XsltStylesheet::Load(m_xslFile, &error);
    m_itemStylesheetError = m_itemStylesheet.IsNull() ? error : QString();
    return m_xslFile;
}

const clsTamselFont* frmTamselSkin::FontSlot(int fontNumber) const {
    return fontNumber >= 0 && fontNumber < kFontSlots ? m_fonts.at(fontNumber).get() : nullptr;
}

void frmTamselSkin::SetFont(QWidget* control, int fontNumber, bool withColour) const {
    if (const clsTamselFont* font = FontSlot(fontNumber)) {
        font->SetFont(control, withColour);
    }
}

QFont frmTamselSkin::GetFont(int fontNumber) const {
    const clsTamselFont* font = FontSlot(fontNumber);
    return font ? font->GetFont() : clsTamselFont().GetFont();
}

quint32 frmTamselSkin::GetFontColor(int fontNumber) const {
    const clsTamselFont* font = FontSlot(fontNumber);
    return font ? font->Color : 0;
}

const SkinFrame& frmTamselSkin::Frame(int kind) const {
    return m_frames.at(IsKind(kind) ? kind : KindMain);
}

qint16 frmTamselSkin::FrameNSize(int kind) const {
    return IsKind(kind) ? qint16(m_frames.at(kind).At(SkinFrame::Top).Height) : qint16(0);
}

qint16 frmTamselSkin::FrameESize(int kind) const {
    return IsKind(kind) ? qint16(m_frames.at(kind).At(SkinFrame::Right).Width) : qint16(0);
}

qint16 frmTamselSkin::FrameSSize(int kind) const {
    return IsKind(kind) ? qint16(m_frames.at(kind).At(SkinFrame::Bottom).Height) : qint16(0);
}

qint16 frmTamselSkin::FrameWSize(int kind) const {
    return IsKind(kind) ? qint16(m_frames.at(kind).At(SkinFrame::Left).Width) : qint16(0);
}

quint32 frmTamselSkin::FrameColor(int kind) const {
    return IsKind(kind) ? m_frames.at(kind).Color() : 0;
}

frmSkinEntity* frmTamselSkin::Entity(int number) const {
    return number >= 1 && number <= kEntitySlots ? m_entities.at(number - 1).get() : nullptr;
}

const SkinPicture& frmTamselSkin::TreeIcon(const QString& key) const {
    static const SkinPicture none;
    const auto found = m_treeIcons.constFind(key);
    return found == m_treeIcons.constEnd() ? none : found.value();
}

const SkinPicture& frmTamselSkin::GetListIcon(ListIcon icon) const {
    return m_listIcons.at(size_t(icon));
}

void frmTamselSkin::PaintAll(SkinWindow& window, SkinSurface& surface, int kind, bool skipHidden) {
    PaintBorder(surface, kind);
    PaintEntities(window, surface, kind, skipHidden);
}

void frmTamselSkin::PaintBorder(SkinSurface& surface, int kind) {
    if (!IsKind(kind)) {
        return;
    }
    const SkinFrame& frame = m_frames.at(kind);
    surface.SetBackColor(SkinColor::ToQColor(frame.Color()));
    QImage& image = surface.Image();
    if (image.isNull()) {
        return;
    }
    QPainter painter(&image);
    frame.Paint(painter, surface.size(), image.devicePixelRatio());
    painter.end();
    surface.Refresh();
}

void frmTamselSkin::RestoreBackground(SkinSurface& surface, int kind, QRectF area) {
    QImage& image = surface.Image();
    if (!IsKind(kind) || image.isNull()) {
        return;
    }
    QPainter painter(&image);
    painter.setClipRect(area);
    m_frames.at(kind).Paint(painter, surface.size(), image.devicePixelRatio());
    painter.end();
    surface.Refresh();
}

void frmTamselSkin::PaintEntities(SkinWindow& window, SkinSurface& surface, int kind, bool skipHidden) {
    for (int slot = 0; slot < kDispatchedEntitySlots; ++slot) {
        frmSkinEntity* entity = m_entities.at(slot).get();
        if (entity && entity->iWindow == kind) {
            entity->PaintIt(window, surface, skipHidden);
        }
    }
}

void frmTamselSkin::SkinMouseMove(SkinWindow& window, Qt::MouseButtons buttons, QPointF point, int kind,
                                  bool skipHidden) {
    for (int slot = 0; slot < kDispatchedEntitySlots; ++slot) {
        frmSkinEntity* entity = m_entities.at(slot).get();
        if (entity && entity->iWindow == kind) {
            entity->SkinMouseMove(window, buttons, point, skipHidden);
        }
    }
}

bool frmTamselSkin::SkinMouseDown(SkinWindow& window, Qt::MouseButton button, QPointF point, int kind,
                                  bool skipHidden) {
    if (button != Qt::LeftButton) {
        return false;
    }
    bool hit = false;
    for (int slot = 0; slot < kDispatchedEntitySlots; ++slot) {
        frmSkinEntity* entity = m_entities.at(slot).get();
        if (entity && entity->iWindow == kind && entity->SkinMouseDown(window, point, skipHidden)) {
            hit = true;
        }
    }
    return hit;
}

void frmTamselSkin::SkinMouseUp(SkinWindow& window, Qt::MouseButton button, QPointF point, int kind,
                                bool skipHidden) {
    if (button != Qt::LeftButton) {
        return;
    }
    // A window's function may load another skin, close the window or end the engine; the walk
    // stops as soon as any of them happened.
    const QPointer<frmTamselSkin> alive(this);
    const QPointer<SkinSurface> surface(window.picSkin());
    const quint64 generation = m_generation;
    for (int slot = 0; slot < kDispatchedEntitySlots; ++slot) {
        frmSkinEntity* entity = m_entities.at(slot).get();
        if (entity && entity->iWindow == kind) {
            entity->SkinMouseUp(window, point, skipHidden);
            if (!alive || !surface || m_generation != generation) {
                return;
            }
        }
    }
}
