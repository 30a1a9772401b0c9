// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Runs a fuzz target over its corpus and over seeded mutants of it, with any compiler.
//
//   replay_TARGET [--mutants N] [--seed S] FILE-OR-DIRECTORY...
//
// A finding ends the process, as it does under libFuzzer; the line printed last names the input.

#include "fuzztarget.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QVector>

#include <algorithm>
#include <cstdio>
#include <random>
#include <utility>

namespace
{

using Random = std::mt19937;

constexpr int largestInput = 64 * 1024;

struct Options {
    int mutants = 0; ///< of each input
    unsigned seed = 1;
    QStringList paths;
};

struct Input {
    QString path;
    QByteArray bytes;
};

Random *randomness = nullptr; // of the mutants

Options readOptions(int argc, char **argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const QString word = QString::fromLocal8Bit(argv[i]);
        const bool hasValue = i + 1 < argc;
        if (word == QLatin1String("--mutants") && hasValue)
            options.mutants = QString::fromLocal8Bit(argv[++i]).toInt();
        else if (word == QLatin1String("--seed") && hasValue)
            options.seed = QString::fromLocal8Bit(argv[++i]).toUInt();
        else
            options.paths.append(word);
    }
    return options;
}

QVector<Input> readInputs(const QStringList &paths)
{
    QStringList files;
    for (const QString &path : paths) {
        if (!QFileInfo(path).isDir()) {
            files.append(path);
            continue;
        }
        QDirIterator directory(path, QDir::Files);
        while (directory.hasNext())
            files.append(directory.next());
    }
    files.sort();
    QVector<Input> inputs;
    for (const QString &path : std::as_const(files)) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            inputs.append({path, file.readAll()});
    }
    return inputs;
}

int below(Random &random, int bound)
{
    return std::uniform_int_distribution<int>(0, bound - 1)(random);
}

/// One small change, of the kinds that parsers trip over.
void mutate(QByteArray &bytes, Random &random)
{
    const int size = int(bytes.size());
    const int at = size ? below(random, size) : 0;
    switch (below(random, 6)) {
    case 0:
        if (size)
            bytes[at] = char(bytes[at] ^ (1 << below(random, 8)));
        break;
    case 1:
        if (size)
            bytes[at] = char(below(random, 256));
        break;
    case 2:
        bytes.insert(at, char(below(random, 256)));
        break;
    case 3:
        bytes.remove(at, 1 + below(random, 8));
        break;
    case 4:
        bytes.insert(at, bytes.mid(size ? below(random, size) : 0, 1 + below(random, 32)));
        break;
    default:
        static constexpr char edges[] = {0, 1, 0x7F, char(0x80), char(0xFF), '"', '{', '-', '9'};
        if (size)
            bytes[at] = edges[std::size_t(below(random, sizeof edges))];
    }
}

void run(const QByteArray &bytes)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                           std::size_t(bytes.size()));
}

void runMutants(const QByteArray &bytes, int count)
{
    auto *const makeMutant = LLVMFuzzerCustomMutator;
    for (int i = 0; i < count; ++i) {
        QByteArray mutant = bytes;
        mutant.resize(largestInput);
        auto *data = reinterpret_cast<std::uint8_t *>(mutant.data());
        const auto size = std::size_t(bytes.size());
        mutant.truncate(int(makeMutant
                                ? makeMutant(data, size, largestInput, unsigned((*randomness)()))
                                : LLVMFuzzerMutate(data, size, largestInput)));
        run(mutant);
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize)
{
    QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    for (int changes = 1 + below(*randomness, 4); changes > 0; --changes)
        mutate(bytes, *randomness);
    bytes.truncate(int(maxSize));
    std::copy(bytes.cbegin(), bytes.cend(), data);
    return std::size_t(bytes.size());
}

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    const Options options = readOptions(argc, argv);
    const QVector<Input> inputs = readInputs(options.paths);
    if (inputs.isEmpty()) {
        std::fputs("replay: no input; name files or directories of the corpus\n", stderr);
        return 2;
    }
    Random random(options.seed);
    randomness = &random;
    for (const Input &input : inputs) {
        std::printf("%s\n", qPrintable(input.path));
        std::fflush(stdout);
        run(input.bytes);
        runMutants(input.bytes, options.mutants);
    }
    std::printf("%d inputs, %d mutants of each: no finding\n", int(inputs.size()), options.mutants);
    return 0;
}
