// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's state and print parameters, as the server and its host application exchange them.

#ifndef PRINTSTATUSPARA_H
#define PRINTSTATUSPARA_H

#include <QString>

#include "zywebsocket_export.h"

/**
 * The record that the commands GET_PRINT_STATUS and PRINT_PARA_SET carry.
 *
 * A plain value: the server makes a fresh one for each request and passes it by reference in
 * ZySslEchoServer::sigGetPrinterStatus() and ZySslEchoServer::sigSetPrintPara(). It is not a
 * registered meta-type, so it only passes through direct connections.
 *
 * Every text bears the name of the JSON key that carries it and travels exactly as it stands: the
 * library never converts or interprets it, so units and ranges are the host's business. All texts
 * start empty (not null); a text left alone travels as an empty JSON string.
 */
class ZYWEBSOCKET_EXPORT PrintStatusPara
{
public:
    /// All texts empty, `printStatus` 0.
    PrintStatusPara();
    PrintStatusPara(const PrintStatusPara &other);
    PrintStatusPara &operator=(const PrintStatusPara &other);
    ~PrintStatusPara();

    QString filename; ///< name of the file being printed
    QString sliceLayerCount; ///< number of slice layers of the job
    QString curSliceLayer; ///< current slice layer
    QString printRemainTime; ///< remaining print time

    // The six parameters that a PRINT_PARA_SET request carries.
    QString initExposure; ///< exposure of a bottom layer
    QString delayLight; ///< rest before an exposure
    QString printExposure; ///< exposure of any other layer
    QString printHeight; ///< how far the plate is lifted between two layers
    QString eleSpeed; ///< how fast it is lifted
    QString bottomExposureNum; ///< number of bottom layers

    QString layerThickness; ///< layer thickness of the job
    QString resin; ///< resin of the job

    /**
     * What the printer is doing; travels as a word: 0 "PRINT_GENERAL", 1 "PRINT_PROCESSING",
     * 2 "PRINT_COMPLETE", 3 "PRINT_FAIL", 4 "PRINT_END", 5 "PRINT_STOP", 6 "PRINT_STOPING",
     * 7 "PRINT_COMPLETING", 8 "TOKEN_ERROR" (how a host rejects the token of a status request).
     * Any other value travels as the empty string.
     */
    int printStatus = 0;
};

#endif // PRINTSTATUSPARA_H
