// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Uploads one file to a tus server: tus_client.mjs ENDPOINT FILE.

import fs from "node:fs";
import path from "node:path";
import { Upload } from "tus-js-client";

const [endpoint, file] = process.argv.slice(2);

new Upload(fs.createReadStream(file), {
  endpoint,
  metadata: { filename: path.basename(file) },
  retryDelays: [],
  onError: (error) => {
    console.error(String(error));
    process.exit(1);
  },
  onSuccess: () => process.exit(0),
}).start();
