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
// Maps the identifiers of the DTDs that the program ships below `resourceFolder` (dtd/) to those
// files, so that documents naming them (RSS 0.91 feeds) get their entities without the network.
void MapShippedDtds(const QString& resourceFolder);
// Whether `path` lies below the trusted folder.
bool IsTrustedFile(const QString& path);

} // namespace XmlSecurity
