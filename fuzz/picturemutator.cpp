#include <QByteArray>
#include <QtEndian>

#include <algorithm>
#include <cstring>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

namespace {

std::uint32_t crcOf(const std::uint8_t *bytes, std::size_t size)
{
    std::uint32_t crc = 0xffffffff;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xedb88320U : 0U);
        }
    }
    return ~crc;
}

/// Gives each whole chunk of a PNG the checksum of what stands in it now.
void repairChecksums(std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t signature = 8;
    constexpr std::size_t frame = 12; // length, type and checksum
    std::size_t chunk = signature;
    while (chunk + frame <= size) {
        const std::size_t length = qFromBigEndian<std::uint32_t>(data + chunk);
        if (length > size - chunk - frame) {
            return;
        }
        std::uint8_t *type = data + chunk + 4;
        qToBigEndian(crcOf(type, length + 4), type + length + 4);
        chunk += length + frame;
    }
}

} // namespace

// A changed PNG is refused for its checksums alone, so they follow the change.
extern "C" std::size_t LLVMFuzzerCustomMutator(
    std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
    const std::size_t mutated = LLVMFuzzerMutate(data, size, maxSize);
    constexpr char signature[] = "\x89PNG";
    if (seed % 8 != 0 && mutated > 8 && std::memcmp(data, signature, 4) == 0) {
        repairChecksums(data, mutated);
    }
    return mutated;
}
