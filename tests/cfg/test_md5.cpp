// The MD5 against the test suite of RFC 1321 and against OpenSSL's, an independent
// implementation, for lengths around every padding boundary, arbitrary update splits and both
// block functions.

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "cfg/cfg_md5.h"
#include "cfg/cfg_md5_rounds.h"

namespace {

using nal::cfg_md5_t;

std::string openssl_md5(const unsigned char* data, std::size_t size) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  EVP_Digest(data, size, digest, &length, EVP_md5(), nullptr);
  static constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (unsigned int i = 0; i < length; ++i) {
    text += digits[digest[i] >> 4];
    text += digits[digest[i] & 0x0F];
  }
  return text;
}

std::vector<unsigned char> random_bytes(std::size_t size, unsigned seed) {
  std::mt19937 generator(seed);
  std::vector<unsigned char> bytes(size);
  for (auto& byte : bytes) {
    byte = static_cast<unsigned char>(generator());
  }
  return bytes;
}

TEST(Md5, MatchesTheTestSuiteOfRfc1321) {
  const std::pair<const char*, const char*> suite[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
      {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
       "d174ab98d277d9f5a5611c2c9f419d9f"},
      {"12345678901234567890123456789012345678901234567890"
       "123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"}};
  for (const auto& [message, digest] : suite) {
    EXPECT_EQ(cfg_md5_t::hex_digest_of(message, std::strlen(message)), digest) << message;
  }
}

TEST(Md5, AgreesWithOpenSslAcrossPaddingBoundariesAndUpdateSplits) {
  const std::vector<unsigned char> data = random_bytes(300'000, 7);
  std::mt19937 generator(11);
  std::vector<std::size_t> lengths;
  for (std::size_t length = 0; length <= 200; ++length) {
    lengths.push_back(length);  // every place the 0x80 and the length can fall
  }
  lengths.insert(lengths.end(), {4095, 4096, 65'536 + 55, 299'999});
  for (const std::size_t length : lengths) {
    cfg_md5_t md5;
    // Pieces of random size, some empty, some longer than a block, from an unaligned start.
    std::size_t done = 0;
    while (done < length) {
      const std::size_t piece = std::min<std::size_t>(length - done, generator() % 150);
      md5.update(data.data() + 1 + done, piece);
      done += piece;
    }
    ASSERT_EQ(md5.hex_digest(), openssl_md5(data.data() + 1, length)) << "length " << length;
  }
}

TEST(Md5, StartsAfreshAfterEachDigest) {
  cfg_md5_t md5;
  md5.update("abc", 3);
  EXPECT_EQ(md5.hex_digest(), "900150983cd24fb0d6963f7d28e17f72");
  md5.update("abc", 3);
  EXPECT_EQ(md5.hex_digest(), "900150983cd24fb0d6963f7d28e17f72");
}

TEST(Md5, BothBlockFunctionsGiveTheSameState) {
  if (!cfg_md5_t::uses_vector_lanes()) {
    GTEST_SKIP() << "this processor has no AVX-512; only the general block function runs";
  }
#if defined(__x86_64__)
  const std::vector<unsigned char> blocks = random_bytes(64 * 1001, 3);
  for (const std::size_t count : {std::size_t{1}, std::size_t{2}, std::size_t{1001}}) {
    nal::md5_word_t general[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    nal::md5_word_t vector[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    nal::md5_blocks_general(general, blocks.data(), count);
    nal::md5_blocks_avx512(vector, blocks.data(), count);
    EXPECT_EQ(std::memcmp(general, vector, sizeof general), 0) << count << " blocks";
  }
#endif
}

}  // namespace
