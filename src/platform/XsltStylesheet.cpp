// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XsltStylesheet.h"

#include "platform/XmlSecurity.h"
#include "platform/XmlText.h"

#include <QUrl>
#include <libxml/tree.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>
#include <mutex>

namespace {

int Forbid(xsltSecurityPrefs*, xsltTransformContext*, const char*) {
    return 0;
}

int ReadOnlyOurOwn(xsltSecurityPrefs*, xsltTransformContext*, const char* value) {
    const QUrl url(QString::fromUtf8(value));
    const QString path = url.isLocalFile() ? url.toLocalFile() : QString::fromUtf8(value);
    return XmlSecurity::IsTrustedFile(path) ? 1 : 0;
}

xsltSecurityPrefs* Prefs() {
    static xsltSecurityPrefs* prefs = [] {
        xsltSecurityPrefs* made = xsltNewSecurityPrefs();
        xsltSetSecurityPrefs(made, XSLT_SECPREF_WRITE_FILE, Forbid);
        xsltSetSecurityPrefs(made, XSLT_SECPREF_CREATE_DIRECTORY, Forbid);
        xsltSetSecurityPrefs(made, XSLT_SECPREF_READ_NETWORK, Forbid);
        xsltSetSecurityPrefs(made, XSLT_SECPREF_WRITE_NETWORK, Forbid);
        xsltSetSecurityPrefs(made, XSLT_SECPREF_READ_FILE, ReadOnlyOurOwn);
        return made;
    }();
    return prefs;
}

// libxslt reports through a process-wide function; the messages of one call are gathered here.
thread_local QString* t_messages = nullptr;

void Collect(void*, const char* format, ...) {
    if (!t_messages) {
        return;
    }
    va_list args;
    va_start(args, format);
    t_messages->append(QString::vasprintf(format, args));
    va_end(args);
}

class MessageScope final {
public:
    MessageScope() {
        static std::once_flag once;
        std::call_once(once, [] { xsltSetGenericErrorFunc(nullptr, Collect); });
        t_messages = &m_text;
    }
    ~MessageScope() { t_messages = nullptr; }
    MessageScope(const MessageScope&) = delete;
    MessageScope& operator=(const MessageScope&) = delete;
    QString Text() const { return m_text.trimmed().isEmpty() ? QStringLiteral("failed") : m_text.trimmed(); }

private:
    QString m_text;
};

struct TransformContextDeleter {
    void operator()(xsltTransformContext* ctxt) const { xsltFreeTransformContext(ctxt); }
};

} // namespace

void XsltStylesheet::Deleter::operator()(_xsltStylesheet* style) const {
    xsltFreeStylesheet(style);
}

XsltStylesheet::XsltStylesheet() = default;
XsltStylesheet::~XsltStylesheet() = default;
XsltStylesheet::XsltStylesheet(XsltStylesheet&&) noexcept = default;
XsltStylesheet& XsltStylesheet::operator=(XsltStylesheet&&) noexcept = default;

XsltStylesheet XsltStylesheet::Compile(const XmlDocument& source, QString* error) {
    XsltStylesheet result;
    MessageScope messages;
    XmlText::QuietErrors quiet;
    if (source.IsNull() || source.DocumentElement().IsNull()) {
        if (error) {
            *error = QStringLiteral("empty document");
        }
        return result;
    }
    // libxslt takes the tree over; it gets a copy so that the source stays the caller's.
    xmlDoc* copy = xmlCopyDoc(source.Raw(), 1);
    result.m_style.reset(xsltParseStylesheetDoc(copy));
    if (!result.m_style) {
        xmlFreeDoc(copy);
        if (error) {
            *error = messages.Text();
        }
    } else if (result.m_style->errors > 0) {
        result.m_style.reset();
        if (error) {
            *error = messages.Text();
        }
    }
    return result;
}

XsltStylesheet XsltStylesheet::Load(const QString& path, QString* error) {
    const XmlDocument source = XmlDocument::Load(path, error);
    if (source.IsNull()) {
        return {};
    }
    return Compile(source, error);
}

XmlDocument XsltStylesheet::TransformToDocument(const XmlDocument& input, QString* error) const {
    if (!m_style || input.IsNull()) {
        if (error) {
            *error = QStringLiteral("nothing to transform");
        }
        return XmlDocument::Adopt(nullptr);
    }
    MessageScope messages;
    XmlText::QuietErrors quiet;
    std::unique_ptr<xsltTransformContext, TransformContextDeleter> ctxt(
        xsltNewTransformContext(m_style.get(), input.Raw()));
    if (!ctxt || xsltSetCtxtSecurityPrefs(Prefs(), ctxt.get()) != 0) {
        if (error) {
            *error = QStringLiteral("cannot prepare the transformation");
        }
        return XmlDocument::Adopt(nullptr);
    }
    xmlDoc* result = xsltApplyStylesheetUser(m_style.get(), input.Raw(), nullptr, nullptr, nullptr, ctxt.get());
    if (!result || ctxt->state != XSLT_STATE_OK) {
        if (result) {
            xmlFreeDoc(result);
        }
        if (error) {
            *error = messages.Text();
        }
        return XmlDocument::Adopt(nullptr);
    }
    return XmlDocument::Adopt(result);
}

XmlDocument XsltStylesheet::TransformToDocument(XmlNode input, QString* error) const {
    XmlDocument wrapper;
    wrapper.SetDocumentElement(wrapper.ImportNode(input));
    return TransformToDocument(wrapper, error);
}

QByteArray XsltStylesheet::TransformToBytes(const XmlDocument& input, QString* error) const {
    const XmlDocument result = TransformToDocument(input, error);
    if (result.IsNull()) {
        return {};
    }
    xmlChar* text = nullptr;
    int length = 0;
    if (xsltSaveResultToString(&text, &length, result.Raw(), m_style.get()) != 0) {
        if (error) {
            *error = QStringLiteral("cannot serialise the result");
        }
        return {};
    }
    XmlText::OwnedChars owned(text);
    return QByteArray(reinterpret_cast<const char*>(text), length);
}
