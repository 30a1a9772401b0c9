// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The vocabulary of the wire: every key, every word, and the table of the messages.
//
// Header-only, for the programs and the tests as well: they link zy_words.

#ifndef VOCABULARY_H
#define VOCABULARY_H

#include <QLatin1String>

namespace zyws
{

/// A constant expression with every compiler, which QLatin1String("…") is not.
template <int N> constexpr QLatin1String literal(const char (&text)[N])
{
    return QLatin1String(text, N - 1);
}

namespace keys
{

inline constexpr QLatin1String cmd = literal("cmd");
inline constexpr QLatin1String token = literal("token");

// File transfer.
inline constexpr QLatin1String filename = literal("filename");
inline constexpr QLatin1String size = literal("size");
inline constexpr QLatin1String offset = literal("offset");
inline constexpr QLatin1String key = literal("key");
inline constexpr QLatin1String errorcode = literal("errorcode");
inline constexpr QLatin1String compress = literal("compress");
inline constexpr QLatin1String wifistate = literal("wifistate");
inline constexpr QLatin1String received = literal("received");
inline constexpr QLatin1String checkstate = literal("checkstate");
/// SHA-256 of the whole file, 64 hex digits; may be added to START_FILE. Deployed printers ignore
/// it.
inline constexpr QLatin1String sha256 = literal("sha256");
/// Chunks that may be under way at once; may be added to START_FILE, and to the reply that accepts
/// one with it. Deployed peers send neither.
inline constexpr QLatin1String window = literal("window");

// Print jobs, status, parameters and version.
inline constexpr QLatin1String status = literal("status");
inline constexpr QLatin1String printStatus = literal("printStatus");
inline constexpr QLatin1String sliceLayerCount = literal("sliceLayerCount");
inline constexpr QLatin1String curSliceLayer = literal("curSliceLayer");
inline constexpr QLatin1String printRemainTime = literal("printRemainTime");
inline constexpr QLatin1String initExposure = literal("initExposure");
inline constexpr QLatin1String delayLight = literal("delayLight");
inline constexpr QLatin1String printExposure = literal("printExposure");
inline constexpr QLatin1String printHeight = literal("printHeight");
inline constexpr QLatin1String eleSpeed = literal("eleSpeed");
inline constexpr QLatin1String bottomExposureNum = literal("bottomExposureNum");
inline constexpr QLatin1String layerThickness = literal("layerThickness");
inline constexpr QLatin1String resin = literal("resin");
inline constexpr QLatin1String version = literal("version");

/// The parameters that PRINT_PARA_SET carries.
inline constexpr QLatin1String parameters[]
    = {initExposure, delayLight, printExposure, printHeight, eleSpeed, bottomExposureNum};

} // namespace keys

/// What "cmd" says.
namespace commands
{

inline constexpr QLatin1String none = literal("TRANSCMD_NULL");
inline constexpr QLatin1String startFile = literal("START_FILE");
inline constexpr QLatin1String cancelFile = literal("CANCEL_FILE");
inline constexpr QLatin1String startData = literal("START_DATA");
inline constexpr QLatin1String checkData = literal("CHECK_DATA");
inline constexpr QLatin1String startPrint = literal("START_PRINT");
inline constexpr QLatin1String printPause = literal("PRINT_PAUSE");
inline constexpr QLatin1String printStop = literal("PRINT_STOP");
inline constexpr QLatin1String getPrintStatus = literal("GET_PRINT_STATUS");
inline constexpr QLatin1String versionCheck = literal("VERSION_CHECK");
inline constexpr QLatin1String printParaSet = literal("PRINT_PARA_SET");
inline constexpr QLatin1String printWorkingLife = literal("PRINT_WORKING_LIFE");

} // namespace commands

/// What "status" says in the answers to START_PRINT.
namespace printstart
{

inline constexpr QLatin1String unStart = literal("UN_START");
inline constexpr QLatin1String busy = literal("BUSY");
inline constexpr QLatin1String checking = literal("CHECKING");
inline constexpr QLatin1String checkFalse = literal("CHECK_FALSE");
inline constexpr QLatin1String started = literal("STARTED");
inline constexpr QLatin1String tokenError = literal("PRINT_TOKEN_ERROR");

/// By the number in ZyFileTransHandle::STAET_PRINT_STATUS.
inline constexpr QLatin1String all[] = {unStart, busy, checking, checkFalse, started, tokenError};

} // namespace printstart

/// What "status" says in the answers to PRINT_PAUSE and PRINT_STOP.
namespace results
{

/// Deliberate spelling: deployed slicers compare against it.
inline constexpr QLatin1String done = literal("CMD_SUCCES");
inline constexpr QLatin1String failed = literal("CMD_FAIL");
inline constexpr QLatin1String tokenError = literal("TOKEN_ERROR");

} // namespace results

/// What "printStatus" says.
namespace printstates
{

inline constexpr QLatin1String general = literal("PRINT_GENERAL");
inline constexpr QLatin1String processing = literal("PRINT_PROCESSING");
inline constexpr QLatin1String complete = literal("PRINT_COMPLETE");
inline constexpr QLatin1String fail = literal("PRINT_FAIL");
inline constexpr QLatin1String end = literal("PRINT_END");
inline constexpr QLatin1String stop = literal("PRINT_STOP");
/// Deliberate spelling: deployed slicers compare against it.
inline constexpr QLatin1String stopping = literal("PRINT_STOPING");
inline constexpr QLatin1String completing = literal("PRINT_COMPLETING");
inline constexpr QLatin1String tokenError = literal("TOKEN_ERROR");

/// By PrintStatusPara::printStatus.
inline constexpr QLatin1String all[]
    = {general, processing, complete, fail, end, stop, stopping, completing, tokenError};

} // namespace printstates

/// What "errorcode" says: ZyFileTransHandle::TRANS_ERROR without its server.
enum TransferError {
    NoError = 0,
    ServerBusy = 1,
    FileBusy = 2,
    UnknownError = 3,
    TokenError = 4,
};

/// What the host decided, as the server's bridge functions return it; 3 to 6 travel as "wifistate".
enum HostAnswer {
    Allowed = 0,
    ReceivingFile = 3, ///< some connection is receiving a file
    CheckingPrintFile = 4, ///< some connection is checking a print file
    Refused = 5,
    TokenRejected = 6,
    CommandDone = 7,
    CommandFailed = 8,
};

/**
 * One command. Its row in the table is its number in ZyFileTransHandle::TRANSCMD.
 *
 * A sample shows every key of the usual form and the JSON type of its value.
 */
struct Message {
    QLatin1String word;
    QLatin1String request; ///< what a slicer sends; empty: a printer ignores the word
    QLatin1String reply; ///< what a printer sends; empty: nothing
};

inline constexpr Message messages[] = {
    {commands::none, {}, {}},
    // "token" may be added. A resumed transfer's reply has no "errorcode", a refusal has
    // "wifistate".
    {commands::startFile,
     literal(R"({"cmd":"START_FILE","filename":"model.zydlp","size":"5","offset":"0",)"
             R"("key":"78563412"})"),
     literal(R"({"cmd":"START_FILE","errorcode":0,"compress":true,"filename":"model.zydlp",)"
             R"("size":"5","offset":"0","key":"78563412"})")},
    {commands::cancelFile, literal(R"({"cmd":"CANCEL_FILE"})"),
     literal(R"({"cmd":"CANCEL_FILE","errorcode":0})")},
    // The answer to a data message.
    {commands::startData,
     {},
     literal(R"({"cmd":"START_DATA","key":"78563412","errorcode":0,"size":"5","received":"5"})")},
    // After the last data message's answer.
    {commands::checkData, {}, literal(R"({"cmd":"CHECK_DATA","key":"78563412","checkstate":1})")},
    {commands::startPrint, literal(R"({"cmd":"START_PRINT","filename":"model.zydlp","token":"t"})"),
     literal(R"({"cmd":"START_PRINT","status":"CHECKING","filename":"model.zydlp"})")},
    {commands::printPause, literal(R"({"cmd":"PRINT_PAUSE","token":"t"})"),
     literal(R"({"cmd":"PRINT_PAUSE","status":"CMD_SUCCES"})")},
    {commands::printStop, literal(R"({"cmd":"PRINT_STOP","token":"t"})"),
     literal(R"({"cmd":"PRINT_STOP","status":"CMD_SUCCES"})")},
    {commands::getPrintStatus, literal(R"({"cmd":"GET_PRINT_STATUS","token":"t"})"),
     literal(R"({"cmd":"GET_PRINT_STATUS","printStatus":"PRINT_PROCESSING",)"
             R"("filename":"model.zydlp","sliceLayerCount":"120","curSliceLayer":"7",)"
             R"("printRemainTime":"3600","initExposure":"30","delayLight":"0.5",)"
             R"("printExposure":"2.5","printHeight":"5","eleSpeed":"120",)"
             R"("bottomExposureNum":"6","layerThickness":"0.05","resin":"grey"})")},
    // Deliberate: the one reply without "cmd"; slicers know it by its "version".
    {commands::versionCheck, literal(R"({"cmd":"VERSION_CHECK"})"), literal(R"({"version":"1"})")},
    {commands::printParaSet,
     literal(R"({"cmd":"PRINT_PARA_SET","token":"t","initExposure":"30","delayLight":"0.5",)"
             R"("printExposure":"2.5","printHeight":"5","eleSpeed":"120",)"
             R"("bottomExposureNum":"6"})"),
     literal(R"({"cmd":"PRINT_PARA_SET","status":""})")},
    // Deliberate: never answered, though slicers send it and would understand a reply.
    {commands::printWorkingLife, literal(R"({"cmd":"PRINT_WORKING_LIFE","token":"t"})"), {}},
};

} // namespace zyws

#endif // VOCABULARY_H
