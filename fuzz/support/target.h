#ifndef TARGET_H
#define TARGET_H

#include <QByteArray>

#include <cstddef>
#include <cstdint>

/// What every fuzz target needs around its own promises: the functions that libFuzzer looks for are named
/// LLVMFuzzer..., take bytes and sizes, and are defined by each target.
extern "C" {
int LLVMFuzzerInitialize(int *argc, char ***argv);
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed);
size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2, size_t size2,
                                 uint8_t *out, size_t maxOutSize, unsigned int seed);

/// libFuzzer's own mutation of plain bytes.
size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);
}

/// The input as a QByteArray of its own, so that reading past its end is noticed.
QByteArray toBytes(const uint8_t *data, size_t size);

/// Puts @a bytes where libFuzzer wants a mutation's result, cut to what fits; returns the size.
size_t store(const QByteArray &bytes, uint8_t *data, size_t maxSize);

/// Silences Qt's warnings, of which broken input causes thousands, and makes numbers those of the C locale.
void prepareQt();

#endif
