#ifndef TARGET_H
#define TARGET_H

#include <QByteArray>

#include <cstddef>
#include <cstdint>

// The functions that libFuzzer calls. Each target defines them.
extern "C" {
int LLVMFuzzerInitialize(int *argc, char ***argv);
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed);
size_t LLVMFuzzerCustomCrossOver(const uint8_t *data1, size_t size1, const uint8_t *data2, size_t size2,
                                 uint8_t *out, size_t maxOutSize, unsigned int seed);

/// libFuzzer's own mutation of bytes.
size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);
}

/// Copies the input, so that the sanitizer detects reads beyond its end.
QByteArray toBytes(const uint8_t *data, size_t size);

/// Copies the result of a mutation to libFuzzer's buffer, truncated to @a maxSize. Returns its size.
size_t store(const QByteArray &bytes, uint8_t *data, size_t maxSize);

/// Turns off Qt's warnings and sets the C locale.
void prepareQt();

/// Aborts with the message "broken promise: ..." if @a kept is false. libFuzzer then reports the input.
void require(bool kept, const char *promise);

#endif
