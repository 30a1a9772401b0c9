// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Holds an AsyncAPI document, and the schemas that it refers to, against AsyncAPI's own parser.
// Usage: node check.mjs ASYNCAPI_YAML

import {Parser, fromFile} from '@asyncapi/parser';

const WARNING = 1; // and 0 is an error, 2 information

const {document, diagnostics} = await fromFile(new Parser(), process.argv[2]).parse();
for (const {code, message, path, severity} of diagnostics)
    console.error(`${severity} ${code} at ${path.join('.')}: ${message}`);
if (!document || diagnostics.some(({severity}) => severity <= WARNING))
    process.exit(1);
console.log(`${document.allOperations().length} operations, ${document.allMessages().length} messages`);
