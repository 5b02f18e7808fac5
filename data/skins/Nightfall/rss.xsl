<?xml version="1.0" encoding="UTF-8"?>
<!-- The item page of the Nightfall skin: one item, wrapped in "channel", becomes a UTF-8 HTML page. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

  <xsl:variable name="lower" select="'abcdefghijklmnopqrstuvwxyz'"/>
  <xsl:variable name="upper" select="'ABCDEFGHIJKLMNOPQRSTUVWXYZ'"/>

  <xsl:template match="/">
    <xsl:variable name="item" select="(//item)[1]"/>
    <html>
      <head>
        <meta http-equiv="Content-Type" content="text/html; charset=UTF-8"/>
        <title><xsl:value-of select="normalize-space($item/title)"/></title>
        <style type="text/css">
body { background-color: #1b1f26; color: #d5dbe4; font-family: "DejaVu Sans", "Noto Sans", sans-serif; font-size: 10pt; margin: 12px 16px; }
p.title { font-size: 13pt; font-weight: bold; color: #e3a857; margin: 0px 0px 4px 0px; }
a.title { color: #e3a857; text-decoration: none; }
p.meta { color: #8792a4; font-size: 8pt; margin: 0px 0px 8px 0px; }
hr { color: #2b313d; background-color: #2b313d; border: none; height: 1px; }
div.body { line-height: 140%; }
a { color: #8ab4e8; }
blockquote { color: #a9b2c1; margin-left: 12px; }
pre, code { font-family: "DejaVu Sans Mono", monospace; font-size: 9pt; }
p.more { margin-top: 12px; font-size: 9pt; }
        </style>
      </head>
      <body>
        <xsl:choose>
          <xsl:when test="$item">
            <xsl:apply-templates select="$item"/>
          </xsl:when>
          <xsl:otherwise>
            <p class="meta">This item has no content.</p>
          </xsl:otherwise>
        </xsl:choose>
      </body>
    </html>
  </xsl:template>

  <xsl:template match="item">
    <xsl:variable name="href" select="normalize-space(link)"/>
    <xsl:variable name="scheme" select="translate(substring-before($href, ':'), $upper, $lower)"/>
    <!-- Only web addresses become links. -->
    <xsl:variable name="safe" select="$scheme = 'http' or $scheme = 'https'"/>
    <xsl:variable name="title">
      <xsl:choose>
        <xsl:when test="normalize-space(title) != ''"><xsl:value-of select="normalize-space(title)"/></xsl:when>
        <xsl:otherwise>Untitled item</xsl:otherwise>
      </xsl:choose>
    </xsl:variable>
    <p class="title">
      <xsl:choose>
        <xsl:when test="$safe"><a class="title" href="{$href}"><xsl:value-of select="$title"/></a></xsl:when>
        <xsl:otherwise><xsl:value-of select="$title"/></xsl:otherwise>
      </xsl:choose>
    </p>
    <p class="meta">
      <xsl:value-of select="@date"/>
      <xsl:if test="normalize-space(@time) != ''">
        <xsl:text>&#160;&#160;</xsl:text>
        <xsl:value-of select="substring(@time, 1, 5)"/>
      </xsl:if>
      <xsl:if test="normalize-space(channeltitle) != ''">
        <xsl:text>&#160;&#160;&#183;&#160;&#160;</xsl:text>
        <xsl:value-of select="normalize-space(channeltitle)"/>
      </xsl:if>
      <xsl:if test="normalize-space(author) != ''">
        <xsl:text>&#160;&#160;&#183;&#160;&#160;</xsl:text>
        <xsl:value-of select="normalize-space(author)"/>
      </xsl:if>
    </p>
    <hr/>
    <!-- The description arrives as escaped HTML text and is written out as HTML. -->
    <div class="body"><xsl:value-of select="description" disable-output-escaping="yes"/></div>
    <xsl:if test="$safe">
      <p class="more"><a href="{$href}">Read the whole article</a></p>
    </xsl:if>
  </xsl:template>
</xsl:stylesheet>
