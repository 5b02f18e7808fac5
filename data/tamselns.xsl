<?xml version="1.0" encoding="UTF-8"?>
<!-- SPDX-FileCopyrightText: 2026 Orvane
     SPDX-License-Identifier: GPL-3.0-or-later -->
<!--
  Tamsel's namespace stylesheet. Every feed that a channel fetches passes through it before the
  channel walks it, and comes out in one shape:

    <rss version="2.0"><channel> channel fields, image, <item>...</item>... </channel></rss>

  with unprefixed RSS 2.0 element names and each item's date in an RFC 822 "pubDate" that starts
  with the weekday ("Tue, 15 Nov 2005 13:45:00 GMT"), because the date reader skips the first
  five characters and reads the next twenty-one.

  - RSS 0.91 to 0.94 and 2.0 are copied element for element. Names of RSS elements are put in
    their usual case, RSS namespaces are dropped, dates in pubDate and lastBuildDate are rewritten
    to the form above when they can be read (kept as they are otherwise), the text-input box is
    left out (its title and link would otherwise be taken for the channel's), and an item or
    channel that lacks a pubDate, author, category, description, language or copyright gets one
    from its Dublin Core or content:encoded counterpart. A description written as elements rather
    than as escaped HTML becomes markup text. Extension elements pass unchanged.
  - RSS 0.90 and RSS 1.0 (RDF, with the Dublin Core, content, syndication, admin and enclosure
    modules) and Atom 0.3 and 1.0 are mapped field by field. Item descriptions hold the richest
    body as HTML source text; Atom XHTML bodies are written out as markup text. Extension
    elements of other namespaces inside items are copied unchanged; those of the channel are not
    (the walk would read a "title" nested in one as the channel's).
  - Any other document becomes an empty channel.
  Plain XSLT 1.0 only. Long texts are split in halves before recursive processing, so that no
  feed can drive the recursion deep enough to abort the transformation.
-->
<xsl:stylesheet version="1.0"
    xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:atom="http://www.w3.org/2005/Atom"
    xmlns:atom03="http://purl.org/atom/ns#"
    xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"
    xmlns:rss1="http://purl.org/rss/1.0/"
    xmlns:rss090="http://my.netscape.com/rdf/simple/0.9/"
    xmlns:dc="http://purl.org/dc/elements/1.1/"
    xmlns:dcterms="http://purl.org/dc/terms/"
    xmlns:content="http://purl.org/rss/1.0/modules/content/"
    xmlns:admin="http://webns.net/mvcb/"
    xmlns:syn="http://purl.org/rss/1.0/modules/syndication/"
    xmlns:enc="http://purl.oclc.org/net/rss_2.0/enc#"
    exclude-result-prefixes="atom atom03 rdf rss1 rss090 dc dcterms content admin syn enc">

  <xsl:output method="xml" encoding="UTF-8" indent="no"/>

  <xsl:variable name="upper" select="'ABCDEFGHIJKLMNOPQRSTUVWXYZ'"/>
  <xsl:variable name="lower" select="'abcdefghijklmnopqrstuvwxyz'"/>
  <xsl:variable name="digits" select="'0123456789'"/>
  <xsl:variable name="letters" select="concat($upper, $lower)"/>
  <xsl:variable name="schemeCharacters" select="concat($upper, $lower, $digits, '+-.')"/>
  <xsl:variable name="months" select="'JanFebMarAprMayJunJulAugSepOctNovDec'"/>
  <!-- Namespaces that some RSS 2.0 feeds put their own elements in, between bars. -->
  <xsl:variable name="rssSpaces" select="'|http://backend.userland.com/rss2|http://blogs.law.harvard.edu/tech/rss|'"/>
  <!-- RSS element names in their usual case, looked up without regard to case. -->
  <xsl:variable name="rssNames" select="concat(' rss channel item title link description language copyright ',
      'managingEditor webMaster pubDate lastBuildDate category generator docs cloud ttl image rating ',
      'textInput skipHours skipDays hour day url width height name author comments enclosure guid source ')"/>
  <xsl:variable name="rssNamesLower" select="translate($rssNames, $upper, $lower)"/>
  <!-- Elements that HTML writes without an end tag. -->
  <xsl:variable name="voidElements" select="' area base br col embed hr img input link meta param source track wbr '"/>
  <!-- Texts up to this length are processed one occurrence after the other; longer ones are halved. -->
  <xsl:variable name="chunk" select="64"/>
  <!-- Titles and other plain texts made from HTML are cut to this length before their tags are removed. -->
  <xsl:variable name="plainLimit" select="2000"/>
  <!-- Longer addresses are kept as written rather than resolved against xml:base. -->
  <xsl:variable name="addressLimit" select="1000"/>

  <xsl:template match="/">
    <xsl:choose>
      <xsl:when test="*[local-name() = 'rss']">
        <xsl:apply-templates select="*" mode="rss2"/>
      </xsl:when>
      <xsl:when test="rdf:RDF">
        <xsl:apply-templates select="rdf:RDF" mode="rdf"/>
      </xsl:when>
      <xsl:when test="atom:feed | atom03:feed">
        <xsl:apply-templates select="*" mode="atom"/>
      </xsl:when>
      <xsl:otherwise>
        <rss version="2.0"><channel/></rss>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- ===================================================================================== -->
  <!-- RSS 0.91 to 0.94 and 2.0: the document as it is, with the few repairs listed above.   -->
  <!-- ===================================================================================== -->

  <xsl:template match="*" mode="rss2">
    <xsl:variable name="ours" select="namespace-uri() = '' or contains($rssSpaces, concat('|', namespace-uri(), '|'))"/>
    <xsl:variable name="name">
      <xsl:call-template name="rss-name"/>
    </xsl:variable>
    <xsl:choose>
      <xsl:when test="not($ours)">
        <xsl:element name="{name()}" namespace="{namespace-uri()}">
          <xsl:apply-templates select="@*|node()" mode="rss2"/>
        </xsl:element>
      </xsl:when>
      <xsl:when test="not(parent::*)">
        <rss version="2.0">
          <xsl:apply-templates select="node()" mode="rss2"/>
        </rss>
      </xsl:when>
      <xsl:when test="$name = 'textInput'"/>
      <!-- Channel fields go before the items: the walk stamps each item with the channel's title
           and date as they stand when it reaches the item. -->
      <xsl:when test="$name = 'channel'">
        <xsl:variable name="items" select="*[translate(local-name(), $upper, $lower) = 'item']
                                            [namespace-uri() = '' or contains($rssSpaces, concat('|', namespace-uri(), '|'))]"/>
        <channel>
          <xsl:call-template name="rss2-channel-additions"/>
          <xsl:apply-templates mode="rss2"
              select="@* | node()[not(self::*) or translate(local-name(), $upper, $lower) != 'item'
                                  or not(namespace-uri() = '' or contains($rssSpaces, concat('|', namespace-uri(), '|')))]"/>
          <xsl:apply-templates select="$items" mode="rss2"/>
        </channel>
      </xsl:when>
      <xsl:when test="$name = 'item'">
        <item>
          <xsl:apply-templates select="@*|node()" mode="rss2"/>
          <xsl:call-template name="rss2-item-additions"/>
        </item>
      </xsl:when>
      <xsl:when test="($name = 'pubDate' or $name = 'lastBuildDate') and not(*)">
        <xsl:variable name="date">
          <xsl:call-template name="any-date">
            <xsl:with-param name="s" select="."/>
          </xsl:call-template>
        </xsl:variable>
        <xsl:element name="{$name}">
          <xsl:apply-templates select="@*" mode="rss2"/>
          <xsl:choose>
            <xsl:when test="string($date) != ''"><xsl:value-of select="$date"/></xsl:when>
            <xsl:otherwise><xsl:value-of select="."/></xsl:otherwise>
          </xsl:choose>
        </xsl:element>
      </xsl:when>
      <!-- Markup written into a description as elements becomes markup text, as the walk and the
           item bank read only a description's text. -->
      <xsl:when test="$name = 'description' and *">
        <description>
          <xsl:call-template name="markup-of-wrapped"/>
        </description>
      </xsl:when>
      <!-- An empty description gives way to the item's content:encoded (see below). -->
      <xsl:when test="$name = 'description' and normalize-space(.) = '' and not(*)
                      and ../content:encoded[normalize-space(.) != '']"/>
      <xsl:otherwise>
        <xsl:element name="{$name}">
          <xsl:apply-templates select="@*|node()" mode="rss2"/>
        </xsl:element>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="@*" mode="rss2">
    <xsl:copy/>
  </xsl:template>

  <!-- An item without a description of its own shows its content:encoded body instead. -->
  <xsl:template match="content:encoded" mode="rss2">
    <xsl:variable name="item" select="parent::*[local-name() = 'item']"/>
    <xsl:choose>
      <xsl:when test="$item and normalize-space(.) != ''
                      and not(preceding-sibling::content:encoded[normalize-space(.) != ''])
                      and not($item/*[translate(local-name(), $upper, $lower) = 'description']
                                     [namespace-uri() = '' or contains($rssSpaces, concat('|', namespace-uri(), '|'))]
                                     [normalize-space(.) != '' or *])">
        <description><xsl:value-of select="."/></description>
      </xsl:when>
      <xsl:otherwise>
        <xsl:apply-templates select="." mode="extension"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- The context element's name, in its usual case when it is an RSS element name. -->
  <xsl:template name="rss-name">
    <xsl:variable name="key" select="concat(' ', translate(local-name(), $upper, $lower), ' ')"/>
    <xsl:choose>
      <xsl:when test="contains($rssNamesLower, $key)">
        <xsl:value-of select="substring($rssNames, string-length(substring-before($rssNamesLower, $key)) + 2,
                                        string-length(local-name()))"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="local-name()"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- Fields that the channel lacks, taken from their Dublin Core counterparts. -->
  <xsl:template name="rss2-channel-additions">
    <xsl:variable name="own" select="*[namespace-uri() = '' or contains($rssSpaces, concat('|', namespace-uri(), '|'))]"/>
    <xsl:if test="not($own[translate(local-name(), $upper, $lower) = 'pubdate'])">
      <xsl:call-template name="date-field">
        <xsl:with-param name="name" select="'pubDate'"/>
        <xsl:with-param name="d1" select="dc:date"/>
        <xsl:with-param name="d2" select="dcterms:issued"/>
        <xsl:with-param name="d3" select="dcterms:modified"/>
      </xsl:call-template>
    </xsl:if>
    <xsl:if test="not($own[translate(local-name(), $upper, $lower) = 'language'])">
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'language'"/>
        <xsl:with-param name="value" select="dc:language"/>
      </xsl:call-template>
    </xsl:if>
    <xsl:if test="not($own[translate(local-name(), $upper, $lower) = 'copyright'])">
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'copyright'"/>
        <xsl:with-param name="value" select="dc:rights"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>

  <!-- Fields that the item lacks, taken from their Dublin Core or Atom counterparts. -->
  <xsl:template name="rss2-item-additions">
    <xsl:variable name="own" select="*[namespace-uri() = '' or contains($rssSpaces, concat('|', namespace-uri(), '|'))]"/>
    <xsl:if test="not($own[translate(local-name(), $upper, $lower) = 'pubdate'])">
      <xsl:call-template name="date-field">
        <xsl:with-param name="name" select="'pubDate'"/>
        <xsl:with-param name="d1" select="dc:date"/>
        <xsl:with-param name="d2" select="dcterms:issued"/>
        <xsl:with-param name="d3" select="dcterms:created"/>
        <xsl:with-param name="d4" select="dcterms:modified"/>
        <xsl:with-param name="d5" select="atom:published"/>
        <xsl:with-param name="d6" select="atom:updated"/>
      </xsl:call-template>
    </xsl:if>
    <xsl:if test="not($own[translate(local-name(), $upper, $lower) = 'author'])">
      <xsl:for-each select="dc:creator">
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'author'"/>
          <xsl:with-param name="value" select="."/>
        </xsl:call-template>
      </xsl:for-each>
    </xsl:if>
    <xsl:if test="not($own[translate(local-name(), $upper, $lower) = 'category'])">
      <xsl:for-each select="dc:subject">
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'category'"/>
          <xsl:with-param name="value" select="."/>
        </xsl:call-template>
      </xsl:for-each>
    </xsl:if>
  </xsl:template>

  <!-- ===================================================================================== -->
  <!-- RSS 0.90 and RSS 1.0 (RDF).                                                           -->
  <!-- ===================================================================================== -->

  <xsl:template match="rdf:RDF" mode="rdf">
    <rss version="2.0">
      <channel>
        <xsl:for-each select="(rss1:channel | rss090:channel)[1]">
          <xsl:call-template name="rdf-channel"/>
        </xsl:for-each>
        <xsl:for-each select="(rss1:image | rss090:image | rss1:channel/rss1:image[*])[1]">
          <image>
            <xsl:call-template name="field">
              <xsl:with-param name="name" select="'url'"/>
              <xsl:with-param name="value" select="(rss1:url | rss090:url | @rdf:about)[1]"/>
            </xsl:call-template>
            <xsl:call-template name="field">
              <xsl:with-param name="name" select="'title'"/>
              <xsl:with-param name="value" select="rss1:title | rss090:title"/>
            </xsl:call-template>
            <xsl:call-template name="field">
              <xsl:with-param name="name" select="'link'"/>
              <xsl:with-param name="value" select="rss1:link | rss090:link"/>
            </xsl:call-template>
          </image>
        </xsl:for-each>
        <xsl:for-each select="rss1:item | rss090:item">
          <xsl:call-template name="rdf-item"/>
        </xsl:for-each>
      </channel>
    </rss>
  </xsl:template>

  <xsl:template name="rdf-channel">
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="'title'"/>
      <xsl:with-param name="value" select="rss1:title | rss090:title"/>
      <xsl:with-param name="fallback" select="dc:title"/>
    </xsl:call-template>
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="'link'"/>
      <xsl:with-param name="value" select="rss1:link | rss090:link"/>
    </xsl:call-template>
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="'description'"/>
      <xsl:with-param name="value" select="rss1:description | rss090:description"/>
      <xsl:with-param name="fallback" select="dc:description"/>
    </xsl:call-template>
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="'language'"/>
      <xsl:with-param name="value" select="dc:language"/>
      <xsl:with-param name="fallback" select="(ancestor-or-self::*/@xml:lang)[last()]"/>
    </xsl:call-template>
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="'copyright'"/>
      <xsl:with-param name="value" select="dc:rights"/>
    </xsl:call-template>
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="'managingEditor'"/>
      <xsl:with-param name="value" select="dc:creator"/>
      <xsl:with-param name="fallback" select="dc:publisher"/>
    </xsl:call-template>
    <xsl:for-each select="admin:errorReportsTo[1]">
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'webMaster'"/>
        <xsl:with-param name="value">
          <xsl:choose>
            <xsl:when test="starts-with(@rdf:resource, 'mailto:')"><xsl:value-of select="substring-after(@rdf:resource, 'mailto:')"/></xsl:when>
            <xsl:otherwise><xsl:value-of select="@rdf:resource"/></xsl:otherwise>
          </xsl:choose>
        </xsl:with-param>
      </xsl:call-template>
    </xsl:for-each>
    <xsl:call-template name="date-field">
      <xsl:with-param name="name" select="'pubDate'"/>
      <xsl:with-param name="d1" select="dc:date"/>
      <xsl:with-param name="d2" select="dcterms:issued"/>
      <xsl:with-param name="d3" select="dcterms:created"/>
    </xsl:call-template>
    <xsl:call-template name="date-field">
      <xsl:with-param name="name" select="'lastBuildDate'"/>
      <xsl:with-param name="d1" select="dcterms:modified"/>
    </xsl:call-template>
    <xsl:for-each select="dc:subject">
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'category'"/>
        <xsl:with-param name="value" select="."/>
      </xsl:call-template>
    </xsl:for-each>
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="'generator'"/>
      <xsl:with-param name="value" select="admin:generatorAgent/@rdf:resource"/>
    </xsl:call-template>
    <xsl:if test="syn:updatePeriod or syn:updateFrequency">
      <xsl:variable name="period" select="normalize-space(syn:updatePeriod)"/>
      <xsl:variable name="frequency">
        <xsl:choose>
          <xsl:when test="number(syn:updateFrequency) &gt;= 1"><xsl:value-of select="floor(number(syn:updateFrequency))"/></xsl:when>
          <xsl:otherwise>1</xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <xsl:variable name="minutes">
        <xsl:choose>
          <xsl:when test="$period = 'hourly'">60</xsl:when>
          <xsl:when test="$period = 'weekly'">10080</xsl:when>
          <xsl:when test="$period = 'monthly'">43200</xsl:when>
          <xsl:when test="$period = 'yearly'">525600</xsl:when>
          <xsl:otherwise>1440</xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <ttl><xsl:value-of select="round($minutes div $frequency)"/></ttl>
    </xsl:if>
  </xsl:template>

  <xsl:template name="rdf-item">
    <xsl:variable name="link" select="normalize-space((rss1:link | rss090:link)[1])"/>
    <item>
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'title'"/>
        <xsl:with-param name="value" select="rss1:title | rss090:title"/>
        <xsl:with-param name="fallback" select="dc:title"/>
      </xsl:call-template>
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'link'"/>
        <xsl:with-param name="value" select="$link"/>
        <xsl:with-param name="fallback" select="@rdf:about"/>
      </xsl:call-template>
      <xsl:variable name="description">
        <xsl:call-template name="rdf-body"/>
      </xsl:variable>
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'description'"/>
        <xsl:with-param name="value" select="$description"/>
      </xsl:call-template>
      <xsl:call-template name="guid">
        <xsl:with-param name="id" select="normalize-space(@rdf:about)"/>
        <xsl:with-param name="link" select="$link"/>
      </xsl:call-template>
      <xsl:call-template name="date-field">
        <xsl:with-param name="name" select="'pubDate'"/>
        <xsl:with-param name="d1" select="dc:date"/>
        <xsl:with-param name="d2" select="dcterms:issued"/>
        <xsl:with-param name="d3" select="dcterms:created"/>
        <xsl:with-param name="d4" select="dcterms:modified"/>
      </xsl:call-template>
      <xsl:for-each select="dc:creator">
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'author'"/>
          <xsl:with-param name="value" select="."/>
        </xsl:call-template>
      </xsl:for-each>
      <xsl:for-each select="dc:subject">
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'category'"/>
          <xsl:with-param name="value" select="."/>
        </xsl:call-template>
      </xsl:for-each>
      <xsl:for-each select="enc:enclosure[@rdf:resource]">
        <xsl:call-template name="enclosure">
          <xsl:with-param name="url" select="@rdf:resource"/>
          <xsl:with-param name="length" select="@enc:length"/>
          <xsl:with-param name="type" select="@enc:type"/>
        </xsl:call-template>
      </xsl:for-each>
      <xsl:apply-templates mode="extension"
          select="*[not(self::rss1:* or self::rss090:* or self::content:* or self::enc:*
                        or self::dc:title or self::dc:description or self::dc:date
                        or self::dc:creator or self::dc:subject or self::dcterms:issued
                        or self::dcterms:created or self::dcterms:modified)]"/>
    </item>
  </xsl:template>

  <!-- The richest body of an RDF item as HTML source: content:encoded, an HTML or XHTML entry of
       content:items, the description, or the Dublin Core description. -->
  <xsl:template name="rdf-body">
    <xsl:variable name="encoded" select="content:encoded[normalize-space(.) != '']"/>
    <xsl:variable name="formatted" select="content:items//content:item
        [content:format/@rdf:resource = 'http://www.w3.org/1999/xhtml'
         or content:format/@rdf:resource = 'http://www.w3.org/TR/html4/']/rdf:value
        [normalize-space(.) != '' or *]"/>
    <xsl:variable name="description" select="(rss1:description | rss090:description)[normalize-space(.) != '']"/>
    <xsl:choose>
      <xsl:when test="$encoded"><xsl:value-of select="$encoded[1]"/></xsl:when>
      <xsl:when test="$formatted[1]/*">
        <xsl:for-each select="$formatted[1]">
          <xsl:call-template name="markup-of-children"/>
        </xsl:for-each>
      </xsl:when>
      <xsl:when test="$formatted"><xsl:value-of select="$formatted[1]"/></xsl:when>
      <xsl:when test="$description"><xsl:value-of select="$description[1]"/></xsl:when>
      <xsl:otherwise><xsl:value-of select="dc:description"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- ===================================================================================== -->
  <!-- Atom 0.3 and Atom 1.0.                                                                -->
  <!-- ===================================================================================== -->

  <xsl:template match="*" mode="atom">
    <xsl:variable name="title">
      <xsl:for-each select="(atom:title | atom03:title)[1]">
        <xsl:call-template name="atom-plain"/>
      </xsl:for-each>
    </xsl:variable>
    <xsl:variable name="link">
      <xsl:call-template name="atom-link"/>
    </xsl:variable>
    <xsl:variable name="updated">
      <xsl:call-template name="first-date">
        <xsl:with-param name="d1" select="atom:updated"/>
        <xsl:with-param name="d2" select="atom03:modified"/>
        <xsl:with-param name="d3" select="dc:date"/>
      </xsl:call-template>
    </xsl:variable>
    <rss version="2.0">
      <channel>
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'title'"/>
          <xsl:with-param name="value" select="$title"/>
        </xsl:call-template>
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'link'"/>
          <xsl:with-param name="value" select="$link"/>
        </xsl:call-template>
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'description'"/>
          <xsl:with-param name="value">
            <xsl:for-each select="(atom:subtitle | atom03:tagline)[1]">
              <xsl:call-template name="atom-plain"/>
            </xsl:for-each>
          </xsl:with-param>
        </xsl:call-template>
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'language'"/>
          <xsl:with-param name="value" select="(ancestor-or-self::*/@xml:lang)[last()]"/>
          <xsl:with-param name="fallback" select="dc:language"/>
        </xsl:call-template>
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'copyright'"/>
          <xsl:with-param name="value">
            <xsl:for-each select="(atom:rights | atom03:copyright)[1]">
              <xsl:call-template name="atom-plain"/>
            </xsl:for-each>
          </xsl:with-param>
          <xsl:with-param name="fallback" select="dc:rights"/>
        </xsl:call-template>
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'managingEditor'"/>
          <xsl:with-param name="value">
            <xsl:for-each select="(atom:author | atom03:author)[1]">
              <xsl:call-template name="atom-person"/>
            </xsl:for-each>
          </xsl:with-param>
        </xsl:call-template>
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'pubDate'"/>
          <xsl:with-param name="value" select="$updated"/>
        </xsl:call-template>
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'lastBuildDate'"/>
          <xsl:with-param name="value" select="$updated"/>
        </xsl:call-template>
        <xsl:for-each select="atom:category[normalize-space(@term) != ''] | dc:subject">
          <xsl:call-template name="atom-category"/>
        </xsl:for-each>
        <xsl:for-each select="(atom:generator | atom03:generator)[1]">
          <xsl:call-template name="field">
            <xsl:with-param name="name" select="'generator'"/>
            <xsl:with-param name="value">
              <xsl:value-of select="normalize-space(.)"/>
              <xsl:if test="normalize-space(@version) != ''">
                <xsl:value-of select="concat(' ', normalize-space(@version))"/>
              </xsl:if>
            </xsl:with-param>
          </xsl:call-template>
        </xsl:for-each>
        <xsl:for-each select="(atom:logo | atom:icon)[normalize-space(.) != ''][1]">
          <image>
            <url>
              <xsl:call-template name="resolve-here">
                <xsl:with-param name="ref" select="normalize-space(.)"/>
              </xsl:call-template>
            </url>
            <xsl:call-template name="field">
              <xsl:with-param name="name" select="'title'"/>
              <xsl:with-param name="value" select="$title"/>
            </xsl:call-template>
            <xsl:call-template name="field">
              <xsl:with-param name="name" select="'link'"/>
              <xsl:with-param name="value" select="$link"/>
            </xsl:call-template>
          </image>
        </xsl:for-each>
        <xsl:for-each select="atom:entry | atom03:entry">
          <xsl:call-template name="atom-entry"/>
        </xsl:for-each>
      </channel>
    </rss>
  </xsl:template>

  <xsl:template name="atom-entry">
    <xsl:variable name="link">
      <xsl:call-template name="atom-link"/>
    </xsl:variable>
    <item>
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'title'"/>
        <xsl:with-param name="value">
          <xsl:for-each select="(atom:title | atom03:title)[1]">
            <xsl:call-template name="atom-plain"/>
          </xsl:for-each>
        </xsl:with-param>
      </xsl:call-template>
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'link'"/>
        <xsl:with-param name="value" select="$link"/>
      </xsl:call-template>
      <xsl:variable name="body">
        <xsl:call-template name="atom-body-of-entry"/>
      </xsl:variable>
      <xsl:call-template name="field">
        <xsl:with-param name="name" select="'description'"/>
        <xsl:with-param name="value" select="$body"/>
      </xsl:call-template>
      <xsl:call-template name="guid">
        <xsl:with-param name="id" select="normalize-space((atom:id | atom03:id)[1])"/>
        <xsl:with-param name="link" select="$link"/>
      </xsl:call-template>
      <xsl:call-template name="date-field">
        <xsl:with-param name="name" select="'pubDate'"/>
        <xsl:with-param name="d1" select="atom:published"/>
        <xsl:with-param name="d2" select="atom:updated"/>
        <xsl:with-param name="d3" select="atom03:issued"/>
        <xsl:with-param name="d4" select="atom03:modified"/>
        <xsl:with-param name="d5" select="atom03:created"/>
        <xsl:with-param name="d6" select="dc:date"/>
      </xsl:call-template>
      <!-- An entry without authors has those of its source, else those of the feed. -->
      <xsl:variable name="authors" select="atom:author | atom03:author"/>
      <xsl:variable name="sourceAuthors" select="atom:source/atom:author"/>
      <xsl:variable name="feedAuthors" select="../atom:author | ../atom03:author"/>
      <xsl:choose>
        <xsl:when test="$authors">
          <xsl:for-each select="$authors"><xsl:call-template name="atom-author"/></xsl:for-each>
        </xsl:when>
        <xsl:when test="$sourceAuthors">
          <xsl:for-each select="$sourceAuthors"><xsl:call-template name="atom-author"/></xsl:for-each>
        </xsl:when>
        <xsl:when test="dc:creator">
          <xsl:for-each select="dc:creator">
            <xsl:call-template name="field">
              <xsl:with-param name="name" select="'author'"/>
              <xsl:with-param name="value" select="."/>
            </xsl:call-template>
          </xsl:for-each>
        </xsl:when>
        <xsl:otherwise>
          <xsl:for-each select="$feedAuthors"><xsl:call-template name="atom-author"/></xsl:for-each>
        </xsl:otherwise>
      </xsl:choose>
      <xsl:for-each select="atom:category[normalize-space(@term) != ''] | dc:subject">
        <xsl:call-template name="atom-category"/>
      </xsl:for-each>
      <xsl:for-each select="(atom:link | atom03:link)[normalize-space(@href) != '']
                            [@rel = 'enclosure' or @rel = 'http://www.iana.org/assignments/relation/enclosure']">
        <xsl:call-template name="enclosure">
          <xsl:with-param name="url">
            <xsl:call-template name="resolve-here">
              <xsl:with-param name="ref" select="normalize-space(@href)"/>
            </xsl:call-template>
          </xsl:with-param>
          <xsl:with-param name="length" select="@length"/>
          <xsl:with-param name="type" select="@type"/>
        </xsl:call-template>
      </xsl:for-each>
      <xsl:for-each select="atom:link[@rel = 'replies'][normalize-space(@href) != '']
                            [not(@type) or @type = 'text/html' or @type = 'application/xhtml+xml'][1]">
        <comments>
          <xsl:call-template name="resolve-here">
            <xsl:with-param name="ref" select="normalize-space(@href)"/>
          </xsl:call-template>
        </comments>
      </xsl:for-each>
      <xsl:apply-templates mode="extension"
          select="*[not(self::atom:* or self::atom03:* or self::dc:subject or self::dc:date or self::dc:creator)]"/>
    </item>
  </xsl:template>

  <!-- The page the context feed or entry points to: its alternate HTML link, another alternate
       link, or the first link at all. -->
  <xsl:template name="atom-link">
    <xsl:variable name="links" select="(atom:link | atom03:link)[normalize-space(@href) != '']"/>
    <xsl:variable name="alternates" select="$links[not(@rel) or @rel = 'alternate'
                                                   or @rel = 'http://www.iana.org/assignments/relation/alternate']"/>
    <xsl:variable name="pages" select="$alternates[not(@type) or @type = 'text/html' or @type = 'application/xhtml+xml']"/>
    <xsl:variable name="chosen" select="$pages[1] | $alternates[not($pages)][1] | $links[not($alternates)][1]"/>
    <xsl:for-each select="$chosen[1]">
      <xsl:call-template name="resolve-here">
        <xsl:with-param name="ref" select="normalize-space(@href)"/>
      </xsl:call-template>
    </xsl:for-each>
  </xsl:template>

  <!-- The entry's body as HTML source: its content when it has a readable one, else its summary. -->
  <xsl:template name="atom-body-of-entry">
    <xsl:variable name="contents" select="atom:content | atom03:content[not(@type = 'multipart/alternative')]
                                          | atom03:content[@type = 'multipart/alternative']/atom03:content"/>
    <xsl:variable name="rich" select="$contents[@type = 'html' or @type = 'xhtml' or @type = 'text/html'
                                                or @type = 'application/xhtml+xml']"/>
    <xsl:variable name="fromContent">
      <xsl:for-each select="$rich[1] | $contents[not($rich)][1]">
        <xsl:call-template name="atom-body"/>
      </xsl:for-each>
    </xsl:variable>
    <xsl:choose>
      <xsl:when test="normalize-space($fromContent) != ''">
        <xsl:value-of select="$fromContent"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:for-each select="(atom:summary | atom03:summary)[1]">
          <xsl:call-template name="atom-body"/>
        </xsl:for-each>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- How the context text construct holds its text: text, html, xhtml, or none (unreadable). -->
  <xsl:template name="atom-kind">
    <xsl:variable name="type" select="translate(normalize-space(@type), $upper, $lower)"/>
    <xsl:choose>
      <xsl:when test="@src">none</xsl:when>
      <xsl:when test="self::atom03:*">
        <xsl:variable name="mode" select="normalize-space(@mode)"/>
        <xsl:variable name="markup" select="$type = 'text/html' or $type = 'application/xhtml+xml'"/>
        <xsl:choose>
          <xsl:when test="$mode = 'base64'">none</xsl:when>
          <xsl:when test="$mode = 'escaped' and $markup">html</xsl:when>
          <xsl:when test="$mode = 'escaped' and ($type = '' or starts-with($type, 'text/'))">text</xsl:when>
          <xsl:when test="$mode = 'escaped'">none</xsl:when>
          <xsl:when test="*">xhtml</xsl:when>
          <xsl:otherwise>text</xsl:otherwise>
        </xsl:choose>
      </xsl:when>
      <xsl:when test="$type = '' or $type = 'text'">text</xsl:when>
      <xsl:when test="$type = 'html' or $type = 'text/html'">html</xsl:when>
      <xsl:when test="$type = 'xhtml' or $type = 'application/xhtml+xml'">xhtml</xsl:when>
      <xsl:when test="starts-with($type, 'text/')">text</xsl:when>
      <xsl:when test="* and (contains($type, '+xml') or substring($type, string-length($type) - 3) = '/xml')">xhtml</xsl:when>
      <xsl:otherwise>none</xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- The context text construct as HTML source text. -->
  <xsl:template name="atom-body">
    <xsl:variable name="kind">
      <xsl:call-template name="atom-kind"/>
    </xsl:variable>
    <xsl:choose>
      <xsl:when test="$kind = 'html'">
        <xsl:value-of select="."/>
      </xsl:when>
      <xsl:when test="$kind = 'xhtml'">
        <xsl:call-template name="markup-of-wrapped"/>
      </xsl:when>
      <xsl:when test="$kind = 'text'">
        <xsl:call-template name="escape-markup">
          <xsl:with-param name="s" select="string(.)"/>
        </xsl:call-template>
      </xsl:when>
    </xsl:choose>
  </xsl:template>

  <!-- The context text construct as plain text (titles, the subtitle, rights). -->
  <xsl:template name="atom-plain">
    <xsl:variable name="kind">
      <xsl:call-template name="atom-kind"/>
    </xsl:variable>
    <xsl:choose>
      <xsl:when test="$kind = 'html'">
        <xsl:call-template name="html-to-plain">
          <xsl:with-param name="s" select="string(.)"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:when test="$kind = 'xhtml'">
        <xsl:value-of select="normalize-space(.)"/>
      </xsl:when>
      <xsl:when test="$kind = 'text'">
        <xsl:value-of select="."/>
      </xsl:when>
    </xsl:choose>
  </xsl:template>

  <!-- An Atom person as RSS writes one: "email (name)", or whichever of the two it has. -->
  <xsl:template name="atom-person">
    <xsl:variable name="name" select="normalize-space((atom:name | atom03:name)[1])"/>
    <xsl:variable name="email" select="normalize-space((atom:email | atom03:email)[1])"/>
    <xsl:choose>
      <xsl:when test="$email != '' and $name != ''"><xsl:value-of select="concat($email, ' (', $name, ')')"/></xsl:when>
      <xsl:otherwise><xsl:value-of select="concat($email, $name)"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="atom-author">
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="'author'"/>
      <xsl:with-param name="value">
        <xsl:call-template name="atom-person"/>
      </xsl:with-param>
    </xsl:call-template>
  </xsl:template>

  <!-- An Atom category (its term, the scheme as domain) or a Dublin Core subject. -->
  <xsl:template name="atom-category">
    <xsl:choose>
      <xsl:when test="self::dc:subject">
        <xsl:call-template name="field">
          <xsl:with-param name="name" select="'category'"/>
          <xsl:with-param name="value" select="."/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <category>
          <xsl:if test="normalize-space(@scheme) != ''">
            <xsl:attribute name="domain"><xsl:value-of select="normalize-space(@scheme)"/></xsl:attribute>
          </xsl:if>
          <xsl:value-of select="normalize-space(@term)"/>
        </category>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- An extension element copied as it is, declaring only the namespaces that it uses. -->
  <xsl:template match="*" mode="extension">
    <xsl:element name="{name()}" namespace="{namespace-uri()}">
      <xsl:apply-templates select="@*|node()" mode="extension"/>
    </xsl:element>
  </xsl:template>

  <xsl:template match="@*" mode="extension">
    <xsl:copy/>
  </xsl:template>

  <!-- ===================================================================================== -->
  <!-- Fields shared by the mapped dialects.                                                 -->
  <!-- ===================================================================================== -->

  <!-- An element `name` holding `value`, else `fallback`; nothing when both are blank. -->
  <xsl:template name="field">
    <xsl:param name="name"/>
    <xsl:param name="value"/>
    <xsl:param name="fallback"/>
    <xsl:choose>
      <xsl:when test="normalize-space($value) != ''">
        <xsl:element name="{$name}"><xsl:value-of select="$value"/></xsl:element>
      </xsl:when>
      <xsl:when test="normalize-space($fallback) != ''">
        <xsl:element name="{$name}"><xsl:value-of select="$fallback"/></xsl:element>
      </xsl:when>
    </xsl:choose>
  </xsl:template>

  <!-- A guid, marked as a permanent link only when it is the item's link. -->
  <xsl:template name="guid">
    <xsl:param name="id"/>
    <xsl:param name="link"/>
    <xsl:if test="$id != ''">
      <guid>
        <xsl:attribute name="isPermaLink">
          <xsl:choose>
            <xsl:when test="$id = $link">true</xsl:when>
            <xsl:otherwise>false</xsl:otherwise>
          </xsl:choose>
        </xsl:attribute>
        <xsl:value-of select="$id"/>
      </guid>
    </xsl:if>
  </xsl:template>

  <xsl:template name="enclosure">
    <xsl:param name="url"/>
    <xsl:param name="length"/>
    <xsl:param name="type"/>
    <xsl:if test="normalize-space($url) != ''">
      <enclosure url="{normalize-space($url)}">
        <xsl:if test="normalize-space($length) != ''">
          <xsl:attribute name="length"><xsl:value-of select="normalize-space($length)"/></xsl:attribute>
        </xsl:if>
        <xsl:if test="normalize-space($type) != ''">
          <xsl:attribute name="type"><xsl:value-of select="normalize-space($type)"/></xsl:attribute>
        </xsl:if>
      </enclosure>
    </xsl:if>
  </xsl:template>

  <!-- ===================================================================================== -->
  <!-- Dates.                                                                                -->
  <!-- ===================================================================================== -->

  <!-- An element `name` with the first of the dates d1 to d6 that can be read, in RFC 822 form. -->
  <xsl:template name="date-field">
    <xsl:param name="name"/>
    <xsl:param name="d1" select="''"/>
    <xsl:param name="d2" select="''"/>
    <xsl:param name="d3" select="''"/>
    <xsl:param name="d4" select="''"/>
    <xsl:param name="d5" select="''"/>
    <xsl:param name="d6" select="''"/>
    <xsl:variable name="date">
      <xsl:call-template name="first-date">
        <xsl:with-param name="d1" select="string($d1)"/>
        <xsl:with-param name="d2" select="string($d2)"/>
        <xsl:with-param name="d3" select="string($d3)"/>
        <xsl:with-param name="d4" select="string($d4)"/>
        <xsl:with-param name="d5" select="string($d5)"/>
        <xsl:with-param name="d6" select="string($d6)"/>
      </xsl:call-template>
    </xsl:variable>
    <xsl:call-template name="field">
      <xsl:with-param name="name" select="$name"/>
      <xsl:with-param name="value" select="$date"/>
    </xsl:call-template>
  </xsl:template>

  <xsl:template name="first-date">
    <xsl:param name="d1" select="''"/>
    <xsl:param name="d2" select="''"/>
    <xsl:param name="d3" select="''"/>
    <xsl:param name="d4" select="''"/>
    <xsl:param name="d5" select="''"/>
    <xsl:param name="d6" select="''"/>
    <xsl:variable name="date">
      <xsl:call-template name="any-date">
        <xsl:with-param name="s" select="string($d1)"/>
      </xsl:call-template>
    </xsl:variable>
    <xsl:choose>
      <xsl:when test="string($date) != ''">
        <xsl:value-of select="$date"/>
      </xsl:when>
      <xsl:when test="concat($d2, $d3, $d4, $d5, $d6) != ''">
        <xsl:call-template name="first-date">
          <xsl:with-param name="d1" select="string($d2)"/>
          <xsl:with-param name="d2" select="string($d3)"/>
          <xsl:with-param name="d3" select="string($d4)"/>
          <xsl:with-param name="d4" select="string($d5)"/>
          <xsl:with-param name="d5" select="string($d6)"/>
        </xsl:call-template>
      </xsl:when>
    </xsl:choose>
  </xsl:template>

  <!-- A W3C-DTF (ISO 8601) or RFC 822 date in RFC 822 form; nothing when it cannot be read. -->
  <xsl:template name="any-date">
    <xsl:param name="s"/>
    <xsl:variable name="t" select="normalize-space($s)"/>
    <xsl:choose>
      <xsl:when test="$t = ''"/>
      <xsl:when test="string-length(substring-before(concat($t, '-'), '-')) = 4
                      and translate(substring($t, 1, 4), $digits, '') = ''">
        <xsl:call-template name="w3c-date">
          <xsl:with-param name="t" select="$t"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="rfc822-date">
          <xsl:with-param name="t" select="$t"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- YYYY, YYYY-MM, YYYY-MM-DD, or YYYY-MM-DDThh:mm[:ss[.s]] with Z, +hh:mm, +hhmm, +hh or no zone.
       A space or a small t may stand for the T. -->
  <xsl:template name="w3c-date">
    <xsl:param name="t"/>
    <xsl:variable name="len" select="string-length($t)"/>
    <xsl:variable name="shapeOk" select="$len = 4
        or ($len = 7 and substring($t, 5, 1) = '-')
        or ($len &gt;= 10 and substring($t, 5, 1) = '-' and substring($t, 8, 1) = '-'
            and ($len = 10 or contains('Tt ', substring($t, 11, 1))))"/>
    <xsl:if test="$shapeOk">
      <xsl:variable name="month">
        <xsl:choose>
          <xsl:when test="$len = 4">01</xsl:when>
          <xsl:otherwise><xsl:value-of select="substring($t, 6, 2)"/></xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <xsl:variable name="day">
        <xsl:choose>
          <xsl:when test="$len &lt; 10">01</xsl:when>
          <xsl:otherwise><xsl:value-of select="substring($t, 9, 2)"/></xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <!-- hh:mm[:ss][.fraction][zone] after the date, or nothing -->
      <xsl:variable name="clock" select="substring($t, 12)"/>
      <xsl:variable name="hasSeconds" select="substring($clock, 6, 1) = ':'"/>
      <xsl:variable name="seconds">
        <xsl:choose>
          <xsl:when test="$hasSeconds"><xsl:value-of select="substring($clock, 7, 2)"/></xsl:when>
          <xsl:otherwise>00</xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <xsl:variable name="tail">
        <xsl:choose>
          <xsl:when test="$hasSeconds"><xsl:value-of select="substring($clock, 9)"/></xsl:when>
          <xsl:otherwise><xsl:value-of select="substring($clock, 6)"/></xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <xsl:variable name="tl" select="string-length($tail)"/>
      <xsl:variable name="zoneLength">
        <xsl:choose>
          <xsl:when test="$tl &gt;= 1 and contains('Zz', substring($tail, $tl, 1))">1</xsl:when>
          <xsl:when test="$tl &gt;= 6 and contains('+-', substring($tail, $tl - 5, 1)) and substring($tail, $tl - 2, 1) = ':'">6</xsl:when>
          <xsl:when test="$tl &gt;= 5 and contains('+-', substring($tail, $tl - 4, 1))">5</xsl:when>
          <xsl:when test="$tl &gt;= 3 and contains('+-', substring($tail, $tl - 2, 1))">3</xsl:when>
          <xsl:otherwise>0</xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <xsl:variable name="zoneText" select="substring($tail, $tl - $zoneLength + 1)"/>
      <xsl:variable name="fraction" select="normalize-space(substring($tail, 1, $tl - $zoneLength))"/>
      <xsl:variable name="zoneDigits" select="translate(substring($zoneText, 2), ':', '')"/>
      <xsl:variable name="zone">
        <xsl:choose>
          <xsl:when test="$zoneLength = 0 or $zoneLength = 1">GMT</xsl:when>
          <xsl:when test="$zoneLength = 3"><xsl:value-of select="concat(substring($zoneText, 1, 1), $zoneDigits, '00')"/></xsl:when>
          <xsl:otherwise><xsl:value-of select="concat(substring($zoneText, 1, 1), $zoneDigits)"/></xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <xsl:variable name="clockOk" select="$len &lt;= 10
          or (substring($clock, 3, 1) = ':'
              and ($fraction = '' or (contains('.,', substring($fraction, 1, 1)) and string-length($fraction) &gt; 1
                                      and translate(substring($fraction, 2), $digits, '') = ''))
              and (string-length($zone) = 3 or (string-length($zone) = 5 and translate(substring($zone, 2), $digits, '') = '')))"/>
      <xsl:if test="$clockOk">
        <xsl:call-template name="rfc822-from-parts">
          <xsl:with-param name="year" select="substring($t, 1, 4)"/>
          <xsl:with-param name="month" select="$month"/>
          <xsl:with-param name="day" select="$day"/>
          <xsl:with-param name="hour" select="substring(concat(substring($clock, 1, 2), '00'), 1, 2)"/>
          <xsl:with-param name="minute" select="substring(concat(substring($clock, 4, 2), '00'), 1, 2)"/>
          <xsl:with-param name="second" select="$seconds"/>
          <xsl:with-param name="zone" select="$zone"/>
        </xsl:call-template>
      </xsl:if>
    </xsl:if>
  </xsl:template>

  <!-- [Www,] d Mmm yy[yy] [h:mm[:ss]] [zone]; a missing time is midnight, a missing zone GMT. -->
  <xsl:template name="rfc822-date">
    <xsl:param name="t"/>
    <xsl:variable name="first" select="substring-before(concat($t, ' '), ' ')"/>
    <xsl:variable name="rest">
      <xsl:choose>
        <xsl:when test="contains($first, ',')"><xsl:value-of select="normalize-space(substring-after($t, ','))"/></xsl:when>
        <xsl:when test="translate($first, concat($upper, $lower), '') = ''"><xsl:value-of select="substring-after($t, ' ')"/></xsl:when>
        <xsl:otherwise><xsl:value-of select="$t"/></xsl:otherwise>
      </xsl:choose>
    </xsl:variable>
    <xsl:variable name="day" select="substring-before($rest, ' ')"/>
    <xsl:variable name="r1" select="substring-after($rest, ' ')"/>
    <xsl:variable name="monthName" select="substring-before($r1, ' ')"/>
    <xsl:variable name="r2" select="substring-after($r1, ' ')"/>
    <xsl:variable name="yearText" select="substring-before(concat($r2, ' '), ' ')"/>
    <xsl:variable name="r3" select="substring-after($r2, ' ')"/>
    <xsl:variable name="t4" select="substring-before(concat($r3, ' '), ' ')"/>
    <xsl:variable name="hasClock" select="contains($t4, ':')"/>
    <xsl:variable name="clock">
      <xsl:if test="$hasClock"><xsl:value-of select="$t4"/></xsl:if>
    </xsl:variable>
    <xsl:variable name="zoneText">
      <xsl:choose>
        <xsl:when test="$hasClock"><xsl:value-of select="substring-before(concat(substring-after($r3, ' '), ' '), ' ')"/></xsl:when>
        <xsl:otherwise><xsl:value-of select="$t4"/></xsl:otherwise>
      </xsl:choose>
    </xsl:variable>
    <xsl:variable name="key" select="concat(translate(substring($monthName, 1, 1), $lower, $upper),
                                            translate(substring($monthName, 2, 2), $upper, $lower))"/>
    <xsl:variable name="monthIndex" select="string-length(substring-before($months, $key)) div 3 + 1"/>
    <xsl:variable name="monthOk" select="string-length($monthName) &gt;= 3 and contains($months, $key)
                                         and floor($monthIndex) = $monthIndex"/>
    <xsl:variable name="year">
      <xsl:choose>
        <xsl:when test="string-length($yearText) = 2 and number($yearText) &lt; 50"><xsl:value-of select="2000 + $yearText"/></xsl:when>
        <xsl:when test="string-length($yearText) = 2 or string-length($yearText) = 3"><xsl:value-of select="1900 + $yearText"/></xsl:when>
        <xsl:otherwise><xsl:value-of select="$yearText"/></xsl:otherwise>
      </xsl:choose>
    </xsl:variable>
    <xsl:variable name="hour" select="substring-before($clock, ':')"/>
    <xsl:variable name="afterHour" select="substring-after($clock, ':')"/>
    <xsl:variable name="minute" select="substring-before(concat($afterHour, ':'), ':')"/>
    <xsl:variable name="second">
      <xsl:choose>
        <xsl:when test="contains($afterHour, ':')"><xsl:value-of select="substring-after($afterHour, ':')"/></xsl:when>
        <xsl:otherwise>00</xsl:otherwise>
      </xsl:choose>
    </xsl:variable>
    <xsl:variable name="zoneUpper" select="translate($zoneText, $lower, $upper)"/>
    <xsl:variable name="zone">
      <xsl:choose>
        <xsl:when test="$zoneUpper = '' or $zoneUpper = 'Z'">GMT</xsl:when>
        <xsl:when test="string-length($zoneUpper) = 6 and contains('+-', substring($zoneUpper, 1, 1)) and substring($zoneUpper, 4, 1) = ':'">
          <xsl:value-of select="translate($zoneUpper, ':', '')"/>
        </xsl:when>
        <xsl:otherwise><xsl:value-of select="$zoneUpper"/></xsl:otherwise>
      </xsl:choose>
    </xsl:variable>
    <xsl:variable name="zoneOk" select="(string-length($zone) &gt;= 1 and string-length($zone) &lt;= 5
                                         and translate($zone, $upper, '') = '')
        or (string-length($zone) = 5 and contains('+-', substring($zone, 1, 1)) and translate(substring($zone, 2), $digits, '') = '')"/>
    <xsl:if test="$monthOk and $zoneOk and string-length($day) &lt;= 2 and (not($hasClock) or string-length($hour) &lt;= 2)">
      <xsl:call-template name="rfc822-from-parts">
        <xsl:with-param name="year" select="$year"/>
        <xsl:with-param name="month" select="format-number($monthIndex, '00')"/>
        <xsl:with-param name="day" select="substring(concat('0', $day), string-length($day), 2)"/>
        <xsl:with-param name="hour">
          <xsl:choose>
            <xsl:when test="$hasClock"><xsl:value-of select="substring(concat('0', $hour), string-length($hour), 2)"/></xsl:when>
            <xsl:otherwise>00</xsl:otherwise>
          </xsl:choose>
        </xsl:with-param>
        <xsl:with-param name="minute">
          <xsl:choose>
            <xsl:when test="$hasClock"><xsl:value-of select="$minute"/></xsl:when>
            <xsl:otherwise>00</xsl:otherwise>
          </xsl:choose>
        </xsl:with-param>
        <xsl:with-param name="second" select="$second"/>
        <xsl:with-param name="zone" select="$zone"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>

  <!-- "Www, dd Mmm yyyy hh:mm:ss zone" from digit texts (four for the year, two for the rest);
       nothing when a part is not a number or out of range. The weekday is counted with the
       Gregorian calendar (Sakamoto's method; 0 is Sunday). -->
  <xsl:template name="rfc822-from-parts">
    <xsl:param name="year"/>
    <xsl:param name="month"/>
    <xsl:param name="day"/>
    <xsl:param name="hour"/>
    <xsl:param name="minute"/>
    <xsl:param name="second"/>
    <xsl:param name="zone"/>
    <xsl:variable name="digitsOk" select="string-length($year) = 4 and string-length($month) = 2 and string-length($day) = 2
        and string-length($hour) = 2 and string-length($minute) = 2 and string-length($second) = 2
        and translate(concat($year, $month, $day, $hour, $minute, $second), $digits, '') = ''"/>
    <xsl:if test="$digitsOk">
      <xsl:variable name="y" select="number($year)"/>
      <xsl:variable name="m" select="number($month)"/>
      <xsl:variable name="d" select="number($day)"/>
      <xsl:variable name="leap" select="($y mod 4 = 0 and $y mod 100 != 0) or $y mod 400 = 0"/>
      <xsl:variable name="monthDays">
        <xsl:choose>
          <xsl:when test="$m = 2 and $leap">29</xsl:when>
          <xsl:when test="$m = 2">28</xsl:when>
          <xsl:when test="$m = 4 or $m = 6 or $m = 9 or $m = 11">30</xsl:when>
          <xsl:otherwise>31</xsl:otherwise>
        </xsl:choose>
      </xsl:variable>
      <xsl:if test="$y &gt;= 1 and $m &gt;= 1 and $m &lt;= 12 and $d &gt;= 1 and $d &lt;= $monthDays
                    and number($hour) &lt;= 23 and number($minute) &lt;= 59 and number($second) &lt;= 60">
        <xsl:variable name="a" select="$y - number($m &lt; 3)"/>
        <xsl:variable name="weekday" select="($a + floor($a div 4) - floor($a div 100) + floor($a div 400)
                                              + number(substring('032503514624', $m, 1)) + $d) mod 7"/>
        <xsl:value-of select="concat(substring('SunMonTueWedThuFriSat', $weekday * 3 + 1, 3), ', ',
                                     $day, ' ', substring($months, ($m - 1) * 3 + 1, 3), ' ', $year, ' ',
                                     $hour, ':', $minute, ':', $second, ' ', $zone)"/>
      </xsl:if>
    </xsl:if>
  </xsl:template>

  <!-- ===================================================================================== -->
  <!-- Addresses: xml:base and relative references (RFC 3986, without query tricks).        -->
  <!-- ===================================================================================== -->

  <!-- `ref` resolved against the xml:base in force at the context node. -->
  <xsl:template name="resolve-here">
    <xsl:param name="ref"/>
    <xsl:choose>
      <xsl:when test="not(ancestor-or-self::*/@xml:base)">
        <xsl:value-of select="$ref"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="resolve-uri">
          <xsl:with-param name="ref" select="$ref"/>
          <xsl:with-param name="base">
            <xsl:call-template name="base-here"/>
          </xsl:with-param>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- The xml:base in force at the context node, or nothing. -->
  <xsl:template name="base-here">
    <xsl:variable name="bases" select="ancestor-or-self::*/@xml:base"/>
    <xsl:if test="$bases">
      <xsl:call-template name="fold-base">
        <xsl:with-param name="bases" select="$bases"/>
        <xsl:with-param name="n" select="count($bases)"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>

  <!-- The base made of the first `n` xml:base values, outermost first. -->
  <xsl:template name="fold-base">
    <xsl:param name="bases"/>
    <xsl:param name="n"/>
    <xsl:variable name="ref" select="normalize-space($bases[$n])"/>
    <xsl:variable name="head" select="substring-before($ref, ':')"/>
    <xsl:choose>
      <xsl:when test="$n &lt;= 1 or ($head != '' and translate(substring($head, 1, 1), $letters, '') = ''
                                     and translate($head, $schemeCharacters, '') = '')">
        <xsl:value-of select="$ref"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="resolve-uri">
          <xsl:with-param name="ref" select="$ref"/>
          <xsl:with-param name="base">
            <xsl:call-template name="fold-base">
              <xsl:with-param name="bases" select="$bases"/>
              <xsl:with-param name="n" select="$n - 1"/>
            </xsl:call-template>
          </xsl:with-param>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- `ref` resolved against `base`; as it is when it is absolute or `base` is not. -->
  <xsl:template name="resolve-uri">
    <xsl:param name="ref"/>
    <xsl:param name="base"/>
    <xsl:variable name="refHead" select="substring-before($ref, ':')"/>
    <xsl:variable name="baseScheme" select="substring-before($base, ':')"/>
    <xsl:choose>
      <xsl:when test="($refHead != '' and translate(substring($refHead, 1, 1), $letters, '') = ''
                       and translate($refHead, $schemeCharacters, '') = '')
                      or $baseScheme = '' or translate(substring($baseScheme, 1, 1), $letters, '') != ''
                      or translate($baseScheme, $schemeCharacters, '') != ''
                      or string-length($ref) &gt; $addressLimit or string-length($base) &gt; $addressLimit">
        <xsl:value-of select="$ref"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:variable name="afterScheme" select="substring-after($base, ':')"/>
        <xsl:variable name="hasAuthority" select="starts-with($afterScheme, '//')"/>
        <xsl:variable name="authority" select="substring-before(concat(substring($afterScheme, 3), '/'), '/')"/>
        <xsl:variable name="host" select="substring-before(concat(substring-before(concat($authority, '?'), '?'), '#'), '#')"/>
        <xsl:variable name="origin" select="concat($baseScheme, ':', substring(concat('//', $host), 1,
                                                   (2 + string-length($host)) * number($hasAuthority)))"/>
        <xsl:variable name="withoutFragment" select="substring-before(concat($base, '#'), '#')"/>
        <xsl:variable name="path" select="substring-before(concat(substring-after($withoutFragment, $origin), '?'), '?')"/>
        <xsl:choose>
          <xsl:when test="$ref = ''"><xsl:value-of select="$withoutFragment"/></xsl:when>
          <xsl:when test="starts-with($ref, '//')"><xsl:value-of select="concat($baseScheme, ':', $ref)"/></xsl:when>
          <xsl:when test="starts-with($ref, '/')"><xsl:value-of select="concat($origin, $ref)"/></xsl:when>
          <xsl:when test="starts-with($ref, '?')"><xsl:value-of select="concat($origin, $path, $ref)"/></xsl:when>
          <xsl:when test="starts-with($ref, '#')"><xsl:value-of select="concat($withoutFragment, $ref)"/></xsl:when>
          <xsl:otherwise>
            <xsl:variable name="folder">
              <xsl:choose>
                <xsl:when test="contains($path, '/')">
                  <xsl:call-template name="folder-of">
                    <xsl:with-param name="path" select="$path"/>
                  </xsl:call-template>
                </xsl:when>
                <xsl:otherwise>/</xsl:otherwise>
              </xsl:choose>
            </xsl:variable>
            <xsl:value-of select="$origin"/>
            <xsl:call-template name="merge-path">
              <xsl:with-param name="folder" select="string($folder)"/>
              <xsl:with-param name="ref" select="$ref"/>
            </xsl:call-template>
          </xsl:otherwise>
        </xsl:choose>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- The path up to and including its last slash. -->
  <xsl:template name="folder-of">
    <xsl:param name="path"/>
    <xsl:if test="contains($path, '/')">
      <xsl:value-of select="concat(substring-before($path, '/'), '/')"/>
      <xsl:call-template name="folder-of">
        <xsl:with-param name="path" select="substring-after($path, '/')"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>

  <!-- `ref` appended to `folder`, with its leading "./" and "../" steps taken. -->
  <xsl:template name="merge-path">
    <xsl:param name="folder"/>
    <xsl:param name="ref"/>
    <xsl:choose>
      <xsl:when test="starts-with($ref, './')">
        <xsl:call-template name="merge-path">
          <xsl:with-param name="folder" select="$folder"/>
          <xsl:with-param name="ref" select="substring($ref, 3)"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:when test="starts-with($ref, '../') or $ref = '..'">
        <xsl:variable name="trimmed" select="substring($folder, 1, string-length($folder) - 1)"/>
        <xsl:variable name="parent">
          <xsl:call-template name="folder-of">
            <xsl:with-param name="path" select="$trimmed"/>
          </xsl:call-template>
        </xsl:variable>
        <xsl:call-template name="merge-path">
          <xsl:with-param name="folder">
            <xsl:choose>
              <xsl:when test="string($parent) = ''">/</xsl:when>
              <xsl:otherwise><xsl:value-of select="$parent"/></xsl:otherwise>
            </xsl:choose>
          </xsl:with-param>
          <xsl:with-param name="ref" select="substring($ref, 4)"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:when test="$ref = '.'"><xsl:value-of select="$folder"/></xsl:when>
      <xsl:otherwise><xsl:value-of select="concat($folder, $ref)"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- ===================================================================================== -->
  <!-- Markup as text.                                                                       -->
  <!-- ===================================================================================== -->

  <!-- The children of the context element as markup text; a lone XHTML div only wraps them. -->
  <xsl:template name="markup-of-wrapped">
    <xsl:choose>
      <xsl:when test="count(*) = 1 and *[local-name() = 'div' and namespace-uri() = 'http://www.w3.org/1999/xhtml']
                      and not(text()[normalize-space(.) != ''])">
        <xsl:for-each select="*">
          <xsl:call-template name="markup-of-children"/>
        </xsl:for-each>
      </xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="markup-of-children"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- The children of the context element as markup text. The xml:base in force is worked out
       once here and handed down, so that the addresses inside come out absolute. -->
  <xsl:template name="markup-of-children">
    <xsl:variable name="base">
      <xsl:call-template name="base-here"/>
    </xsl:variable>
    <xsl:apply-templates select="node()" mode="markup">
      <xsl:with-param name="base" select="string($base)"/>
    </xsl:apply-templates>
  </xsl:template>

  <xsl:template match="*" mode="markup">
    <xsl:param name="base"/>
    <xsl:choose>
      <xsl:when test="@xml:base">
        <xsl:call-template name="markup-element">
          <xsl:with-param name="base">
            <xsl:call-template name="resolve-uri">
              <xsl:with-param name="ref" select="normalize-space(@xml:base)"/>
              <xsl:with-param name="base" select="$base"/>
            </xsl:call-template>
          </xsl:with-param>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="markup-element">
          <xsl:with-param name="base" select="$base"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="markup-element">
    <xsl:param name="base"/>
    <xsl:value-of select="concat('&lt;', local-name())"/>
    <xsl:for-each select="@*[namespace-uri() = '' or name() = 'xml:lang']">
      <xsl:value-of select="concat(' ', local-name(), '=&quot;')"/>
      <xsl:variable name="value" select="normalize-space(.)"/>
      <xsl:choose>
        <xsl:when test="string($base) != '' and (name() = 'href' or name() = 'src')
                        and not(starts-with($value, 'http:') or starts-with($value, 'https:')
                                or starts-with($value, 'mailto:'))">
          <xsl:variable name="resolved">
            <xsl:call-template name="resolve-uri">
              <xsl:with-param name="ref" select="$value"/>
              <xsl:with-param name="base" select="string($base)"/>
            </xsl:call-template>
          </xsl:variable>
          <xsl:call-template name="escape-markup">
            <xsl:with-param name="s" select="string($resolved)"/>
            <xsl:with-param name="quotes" select="true()"/>
          </xsl:call-template>
        </xsl:when>
        <xsl:when test="contains(., '&amp;') or contains(., '&lt;') or contains(., '&gt;') or contains(., '&quot;')">
          <xsl:call-template name="escape-markup">
            <xsl:with-param name="s" select="string(.)"/>
            <xsl:with-param name="quotes" select="true()"/>
          </xsl:call-template>
        </xsl:when>
        <xsl:otherwise>
          <xsl:value-of select="."/>
        </xsl:otherwise>
      </xsl:choose>
      <xsl:value-of select="'&quot;'"/>
    </xsl:for-each>
    <xsl:choose>
      <xsl:when test="node()">
        <xsl:value-of select="'&gt;'"/>
        <xsl:apply-templates select="node()" mode="markup">
          <xsl:with-param name="base" select="string($base)"/>
        </xsl:apply-templates>
        <xsl:value-of select="concat('&lt;/', local-name(), '&gt;')"/>
      </xsl:when>
      <xsl:when test="contains($voidElements, concat(' ', local-name(), ' '))">
        <xsl:value-of select="' /&gt;'"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="concat('&gt;&lt;/', local-name(), '&gt;')"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="text()" mode="markup">
    <xsl:choose>
      <xsl:when test="contains(., '&amp;') or contains(., '&lt;') or contains(., '&gt;')">
        <xsl:call-template name="escape-markup">
          <xsl:with-param name="s" select="string(.)"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="."/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="comment() | processing-instruction()" mode="markup"/>

  <!-- `s` with &, < and > (and with `quotes`, ") written as character references, in one pass:
       each step writes the text up to the next of these characters and its reference. -->
  <xsl:template name="escape-markup">
    <xsl:param name="s"/>
    <xsl:param name="quotes" select="false()"/>
    <xsl:variable name="specials" select="substring('&amp;&lt;&gt;&quot;', 1, 3 + number($quotes))"/>
    <xsl:choose>
      <xsl:when test="not(contains($s, '&amp;') or contains($s, '&lt;') or contains($s, '&gt;')
                          or ($quotes and contains($s, '&quot;')))">
        <xsl:value-of select="$s"/>
      </xsl:when>
      <xsl:when test="string-length($s) &gt; $chunk">
        <xsl:variable name="half" select="floor(string-length($s) div 2)"/>
        <xsl:call-template name="escape-markup">
          <xsl:with-param name="s" select="substring($s, 1, $half)"/>
          <xsl:with-param name="quotes" select="$quotes"/>
        </xsl:call-template>
        <xsl:call-template name="escape-markup">
          <xsl:with-param name="s" select="substring($s, $half + 1)"/>
          <xsl:with-param name="quotes" select="$quotes"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:variable name="before" select="substring-before(translate($s, $specials, '&amp;&amp;&amp;&amp;'), '&amp;')"/>
        <xsl:variable name="special" select="substring($s, string-length($before) + 1, 1)"/>
        <xsl:value-of select="$before"/>
        <xsl:choose>
          <xsl:when test="$special = '&amp;'">&amp;amp;</xsl:when>
          <xsl:when test="$special = '&lt;'">&amp;lt;</xsl:when>
          <xsl:when test="$special = '&gt;'">&amp;gt;</xsl:when>
          <xsl:otherwise>&amp;quot;</xsl:otherwise>
        </xsl:choose>
        <xsl:call-template name="escape-markup">
          <xsl:with-param name="s" select="substring($s, string-length($before) + 2)"/>
          <xsl:with-param name="quotes" select="$quotes"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- HTML source as plain text: tags dropped, the common character references read, spaces
       collapsed. -->
  <xsl:template name="html-to-plain">
    <xsl:param name="s"/>
    <xsl:variable name="stripped">
      <xsl:call-template name="strip-tags">
        <xsl:with-param name="s" select="substring($s, 1, $plainLimit)"/>
      </xsl:call-template>
    </xsl:variable>
    <xsl:call-template name="decode-references">
      <xsl:with-param name="s" select="normalize-space($stripped)"/>
      <xsl:with-param name="names" select="'&amp;lt; &amp;gt; &amp;quot; &amp;apos; &amp;#39; &amp;#34; &amp;nbsp; &amp;amp; '"/>
      <xsl:with-param name="characters" select="concat('&lt;&gt;&quot;', &quot;''&quot;, '&quot;&#160;&amp;')"/>
    </xsl:call-template>
  </xsl:template>

  <xsl:template name="strip-tags">
    <xsl:param name="s"/>
    <xsl:choose>
      <xsl:when test="contains($s, '&lt;')">
        <xsl:value-of select="substring-before($s, '&lt;')"/>
        <xsl:variable name="inside" select="substring-after($s, '&lt;')"/>
        <xsl:if test="contains($inside, '&gt;')">
          <xsl:call-template name="strip-tags">
            <xsl:with-param name="s" select="substring-after($inside, '&gt;')"/>
          </xsl:call-template>
        </xsl:if>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="$s"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- Replaces each reference listed in `names` (space-separated) by the character at the same
       place of `characters`. "&amp;" comes last, so "&amp;lt;" reads as "&lt;". -->
  <xsl:template name="decode-references">
    <xsl:param name="s"/>
    <xsl:param name="names"/>
    <xsl:param name="characters"/>
    <xsl:choose>
      <xsl:when test="$names = '' or not(contains($s, '&amp;'))">
        <xsl:value-of select="$s"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:variable name="once">
          <xsl:call-template name="replace">
            <xsl:with-param name="s" select="$s"/>
            <xsl:with-param name="from" select="substring-before($names, ' ')"/>
            <xsl:with-param name="to" select="substring($characters, 1, 1)"/>
          </xsl:call-template>
        </xsl:variable>
        <xsl:call-template name="decode-references">
          <xsl:with-param name="s" select="string($once)"/>
          <xsl:with-param name="names" select="substring-after($names, ' ')"/>
          <xsl:with-param name="characters" select="substring($characters, 2)"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- Replaces every `from` in `s` by `to`. A long text is cut near its middle (never inside an
       occurrence of `from`) and each half is handled alone, which keeps the recursion shallow. -->
  <xsl:template name="replace">
    <xsl:param name="s"/>
    <xsl:param name="from"/>
    <xsl:param name="to"/>
    <xsl:choose>
      <xsl:when test="$from = '' or not(contains($s, $from))">
        <xsl:value-of select="$s"/>
      </xsl:when>
      <xsl:when test="string-length($s) &gt; $chunk">
        <xsl:variable name="half" select="floor(string-length($s) div 2)"/>
        <xsl:variable name="reach" select="string-length($from) - 1"/>
        <xsl:variable name="window" select="substring($s, $half - $reach + 1, 2 * $reach)"/>
        <xsl:variable name="cut">
          <xsl:choose>
            <xsl:when test="$reach &gt; 0 and contains($window, $from)">
              <xsl:value-of select="$half - $reach + string-length(substring-before($window, $from))"/>
            </xsl:when>
            <xsl:otherwise><xsl:value-of select="$half"/></xsl:otherwise>
          </xsl:choose>
        </xsl:variable>
        <xsl:call-template name="replace">
          <xsl:with-param name="s" select="substring($s, 1, $cut)"/>
          <xsl:with-param name="from" select="$from"/>
          <xsl:with-param name="to" select="$to"/>
        </xsl:call-template>
        <xsl:call-template name="replace">
          <xsl:with-param name="s" select="substring($s, $cut + 1)"/>
          <xsl:with-param name="from" select="$from"/>
          <xsl:with-param name="to" select="$to"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="concat(substring-before($s, $from), $to)"/>
        <xsl:call-template name="replace">
          <xsl:with-param name="s" select="substring-after($s, $from)"/>
          <xsl:with-param name="from" select="$from"/>
          <xsl:with-param name="to" select="$to"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

</xsl:stylesheet>
