#include "phones/emulated/code_signature.h"

#include "phones/emulated/mach_o.h"

#include <algorithm>
#include <openssl/evp.h>

namespace noctara::emulated {

namespace {

// The numbers are those of Apple's <kern/cs_blobs.h>. All fields are big-endian.
constexpr std::uint32_t superBlob = 0xfade0cc0;
constexpr std::uint32_t codeDirectory = 0xfade0c02;
constexpr std::uint8_t hashSha1 = 1;
constexpr std::uint8_t hashSha256 = 2;

std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t offset) {
    if (bytes.size() < 4 || offset > bytes.size() - 4)
        throw BadLibrary("the signature ends too early");
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<std::uint8_t>(bytes[offset + i]);
    return value;
}

std::span<const std::byte> blobAt(std::span<const std::byte> signature, std::size_t offset) {
    const std::size_t size = numberAt(signature, offset + 4);
    if (size > signature.size() - offset)
        throw BadLibrary("the signature ends too early");
    return signature.subspan(offset, size);
}

void checkDirectory(std::span<const std::byte> file, std::span<const std::byte> signature,
                    std::span<const std::byte> directory) {
    const std::size_t hashes = numberAt(directory, 16);
    const std::size_t count = numberAt(directory, 28);
    const std::size_t limit = numberAt(directory, 32);
    const std::uint32_t kinds = numberAt(directory, 36);
    const std::size_t hashSize = kinds >> 24;
    const auto hashType = static_cast<std::uint8_t>(kinds >> 16);
    const std::size_t pageBits = kinds & 0xff;
    if (limit != static_cast<std::size_t>(signature.data() - file.data()))
        throw BadLibrary("the signature does not cover the whole file");
    if ((hashType != hashSha1 && hashType != hashSha256) || pageBits < 12 || pageBits > 14)
        throw BadLibrary("the signature has an unknown kind of hash");
    const std::size_t pageSize = std::size_t{1} << pageBits;
    if (count != (limit + pageSize - 1) / pageSize || hashes > directory.size() ||
        count * hashSize > directory.size() - hashes)
        throw BadLibrary("the signature does not cover the whole file");
    const EVP_MD* const method = hashType == hashSha1 ? EVP_sha1() : EVP_sha256();
    for (std::size_t page = 0; page < count; ++page) {
        const auto content =
            file.subspan(page * pageSize, std::min(pageSize, limit - page * pageSize));
        unsigned char hash[EVP_MAX_MD_SIZE];
        unsigned length = 0;
        if (!EVP_Digest(content.data(), content.size(), hash, &length, method, nullptr) ||
            hashSize > length ||
            std::memcmp(hash, directory.data() + hashes + page * hashSize, hashSize) != 0)
            throw BadLibrary("page " + std::to_string(page) + " differs from its signed hash");
    }
}

} // namespace

void checkCodeSignature(std::span<const std::byte> file, std::span<const std::byte> signature) {
    if (numberAt(signature, 0) != superBlob)
        throw BadLibrary("the signature is damaged");
    const std::uint32_t blobs = numberAt(signature, 8);
    bool covered = false;
    for (std::uint32_t i = 0; i < blobs; ++i) {
        const auto blob = blobAt(signature, numberAt(signature, 12 + 8 * std::size_t{i} + 4));
        if (numberAt(blob, 0) == codeDirectory) {
            checkDirectory(file, signature, blob);
            covered = true;
        }
    }
    if (!covered)
        throw BadLibrary("the signature has no hashes of the code");
}

} // namespace noctara::emulated
