# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# What a header need not say: a setter belongs to the getter before it, and what is copied is equal.
s|^ *void set([A-Z])(\w*)\(.*\);$|& ///< Sets \l\1\2().|
s|^ *(\w+)\(const \1 &other\);$|& ///< A copy.|
s|^ *(\w+) &operator=\(const \1 &other\);$|& ///< A copy.|
