<?xml version="1.0" encoding="UTF-8"?>
<!-- Tamsel's fallback item page: the item of channel/item as a calm, readable HTML page. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="html" encoding="UTF-8" indent="no"
              doctype-public="-//W3C//DTD HTML 4.01//EN"/>

  <xsl:template match="/">
    <xsl:apply-templates select="(//item)[1]"/>
  </xsl:template>

  <xsl:template match="item">
    <html>
      <head>
        <meta http-equiv="Content-Type" content="text/html; charset=UTF-8"/>
        <title><xsl:value-of select="title"/></title>
        <style type="text/css">
          body { font-family: sans-serif; font-size: 10pt; color: #262a30; background: #ffffff; margin: 10px 14px; }
          h1 { font-size: 13pt; font-weight: bold; margin: 0 0 4px 0; }
          h1 a { color: #1f4f8f; text-decoration: none; }
          .meta { color: #6b7380; font-size: 8.5pt; margin-bottom: 10px; }
          .body { line-height: 140%; }
          .extra { color: #6b7380; font-size: 8.5pt; margin-top: 12px; border-top: 1px solid #e3e6ea; padding-top: 6px; }
          img { max-width: 100%; }
        </style>
      </head>
      <body>
        <h1>
          <xsl:choose>
            <xsl:when test="string(link)">
              <a href="{link}"><xsl:call-template name="title"/></a>
            </xsl:when>
            <xsl:otherwise><xsl:call-template name="title"/></xsl:otherwise>
          </xsl:choose>
        </h1>
        <div class="meta">
          <xsl:value-of select="@date"/>
          <xsl:if test="string(@time)"><xsl:text> </xsl:text><xsl:value-of select="substring(@time, 1, 5)"/></xsl:if>
          <xsl:if test="string(channeltitle)">
            <xsl:text> · </xsl:text><xsl:value-of select="channeltitle"/>
          </xsl:if>
          <xsl:if test="string(author)">
            <xsl:text> · </xsl:text><xsl:value-of select="author"/>
          </xsl:if>
        </div>
        <div class="body">
          <xsl:value-of select="description" disable-output-escaping="yes"/>
        </div>
        <xsl:if test="enclosure/@url or string(comments)">
          <div class="extra">
            <xsl:if test="enclosure/@url">
              <a href="{enclosure/@url}">Attachment</a>
              <xsl:if test="string(enclosure/@type)"> (<xsl:value-of select="enclosure/@type"/>)</xsl:if>
            </xsl:if>
            <xsl:if test="enclosure/@url and string(comments)"><xsl:text> · </xsl:text></xsl:if>
            <xsl:if test="string(comments)"><a href="{comments}">Comments</a></xsl:if>
          </div>
        </xsl:if>
      </body>
    </html>
  </xsl:template>

  <xsl:template name="title">
    <xsl:choose>
      <xsl:when test="string(title)"><xsl:value-of select="title"/></xsl:when>
      <xsl:otherwise>(untitled)</xsl:otherwise>
    </xsl:choose>
  </xsl:template>
</xsl:stylesheet>
