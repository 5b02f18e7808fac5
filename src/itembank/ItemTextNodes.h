// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <libxml/tree.h>

// How the item searches read an item's text in place: its text and CDATA nodes, in document order.
inline bool IsTextLike(const xmlNode* node) {
    return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

// The node after `node` in document order below `item`, none after the last; without recursion,
// since items may nest deeply.
inline const xmlNode* NextInItem(const xmlNode* node, const xmlNode* item) {
    if (node->type == XML_ELEMENT_NODE && node->children) {
        return node->children;
    }
    while (!node->next) {
        node = node->parent;
        if (!node || node == item) {
            return nullptr;
        }
    }
    return node->next;
}
