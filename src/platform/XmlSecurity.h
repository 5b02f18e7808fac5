// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The process-wide guard of libxml2 and libxslt: no document may make the program read a file
// or contact a host. Only files below the trusted folder (the program's own resources) and
// DTDs mapped to such files by their public or system identifier are ever loaded.
namespace XmlSecurity {

// Initialises libxml2 and installs the guarded entity loader; safe to call more than once.
void Install();
// The folder whose files documents and stylesheets may refer to.
void SetTrustedFolder(const QString& folder);
QString TrustedFolder();
// Lets a DTD named by `publicOrSystemId` be read from `localFile` (below the trusted folder).
void MapDtd(const QString& publicOrSystemId, const QString& localFile);
// Whether `path` lies below the trusted folder.
bool IsTrustedFile(const QString& path);

} // namespace XmlSecurity
