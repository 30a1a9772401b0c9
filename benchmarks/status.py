# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""GET_PRINT_STATUS, asked by the same raw clients of both servers."""

import json

import measure

CROWDS = (1, 50, 500)
KEYS = {"cmd", "printStatus", "filename", "sliceLayerCount", "curSliceLayer", "printRemainTime",
        "initExposure", "delayLight", "printExposure", "printHeight", "eleSpeed",
        "bottomExposureNum", "layerThickness", "resin"}
LATENCY_REQUESTS = 10000
THROUGHPUT_REQUESTS = 60000


def ask(side, mode, clients, requests, environment):
    with measure.scratch(0) as directory:
        with measure.Server(side, directory, environment) as server:
            result = measure.run_json([measure.program("load"), "--port", str(server.port),
                                       "--clients", str(clients), "--requests", str(requests),
                                       mode])
    if set(json.loads(result["answer"])) != KEYS:
        raise RuntimeError(f"{side}: no whole status: {result['answer']}")
    result["latency"] = 1e6 * result.get("latency", 0)
    result["cpu"] = server.usage["cpu"]
    return result


def compare(mode, clients, requests, options, environment):
    results = measure.interleave(
        options.pairs, lambda side: ask(side, mode, clients, requests, environment))
    if len({result["answer"] for side in results.values() for result in side}) != 1:
        raise RuntimeError("the two servers answer differently")
    return results


def named(clients):
    return f"{clients} client" + ("s" if clients > 1 else "")


def run(options):
    rows = []
    for clients in CROWDS:
        results = compare("latency", clients, LATENCY_REQUESTS, options, measure.QUIET)
        rows.append(measure.row(f"{named(clients)}, one asking", "median latency", "us", results,
                                "latency", "<= 1.05"))
    for clients in CROWDS:
        results = compare("throughput", clients, THROUGHPUT_REQUESTS, options, measure.QUIET)
        rows.append(measure.row(f"{named(clients)}, all asking", "throughput", "1/s", results,
                                "throughput", ">= 0.95"))
        rows.append(measure.row(f"{named(clients)}, all asking", "server CPU, connecting included",
                                "s", results, "cpu"))
    # As the library comes: a debug line for each command, which a host's filter may stop.
    results = compare("throughput", CROWDS[-1], THROUGHPUT_REQUESTS, options, {})
    rows.append(measure.row(f"{named(CROWDS[-1])}, all asking, debug lines on", "throughput",
                            "1/s", results, "throughput"))
    return rows, {"pairs": options.pairs, "log": "debug lines off but in the last row"}
