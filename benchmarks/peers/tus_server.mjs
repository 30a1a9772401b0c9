// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A tus server on a port of the system's choice: tus_server.mjs DIRECTORY. Prints "listening PORT".

import http from "node:http";
import { FileStore } from "@tus/file-store";
import { Server } from "@tus/server";

const tus = new Server({
  path: "/files",
  datastore: new FileStore({ directory: process.argv[2] }),
  namingFunction: (request, metadata) => metadata.filename,
});

const server = http.createServer(tus.handle.bind(tus));
server.listen(0, () => console.log(`listening ${server.address().port}`));
