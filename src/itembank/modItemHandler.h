// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Reading and changing single item nodes. Names of children are compared as written, prefix
// included. Items of an item bank must be changed only through SetChildText and SetItemRead:
// they keep the bank's indexes up to date.

#include "platform/XmlNode.h"

#include <QDate>
#include <QString>
#include <QTime>

// The typed value of the first child element named `name`; "" when the node is null or has no
// such child.
QString GetChildText(const XmlNode& node, const QString& name);
// Sets the text of the first child element named `name`, first appending such an element
// (without namespace) as the last child when there is none. Does nothing on a null node.
void SetChildText(const XmlNode& node, const QString& name, const QString& value);
// The value of the named attribute; "" when absent.
QString GetAttributeText(const XmlNode& node, const QString& name);

QString GetItemTime(const XmlNode& item);
QString GetItemDate(const XmlNode& item);
// The number of whole days between the item's date attribute and `today`, as a positive
// number; 0 when the date attribute cannot be read.
int GetItemAge(const XmlNode& item, const QDate& today);
QString GetItemTitle(const XmlNode& item);
QString GetItemDescription(const XmlNode& item);
QString GetItemLink(const XmlNode& item);
QString GetItemPubDate(const XmlNode& item);
// The state tests compare with "true" exactly; any other text counts as false.
bool IsItemDeleted(const XmlNode& item);
bool IsItemRead(const XmlNode& item);
bool IsItemFlagged(const XmlNode& item);
void SetItemRead(const XmlNode& item, bool read);

// An item's date attribute: "dd mmm yyyy" with the English month abbreviations Jan to Dec,
// whatever the locale ("05 Mar 2005"). An invalid date gives "".
QString FormatItemDate(const QDate& date);
// An item's time attribute: "hh:mm:ss" on the 24-hour clock.
QString FormatItemTime(const QTime& time);
// Reads a date attribute written by FormatItemDate (surrounding blanks, a one-digit day and any
// letter case of the month are accepted); an invalid date when the text is not such a date.
QDate ParseItemDateAttribute(const QString& text);
