// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Nothing: the program exists for its precompiled headers.

int main()
{
    return 0;
}
