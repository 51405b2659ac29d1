#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "sorvane/archive/BitBuffer.h"
#include "sorvane/core/RuntimeException.h"

using sorvane::BitBuffer;

namespace {

std::vector<uint8_t> valid(const BitBuffer& b) {
    std::vector<uint8_t> stored = b.getBytes();
    stored.resize(static_cast<size_t>((b.getBitSize() + 7) / 8));
    return stored;
}

} // namespace

TEST(BitBuffer, DefaultsAndBitOrder) {
    BitBuffer b;
    EXPECT_FALSE(b.isBigEndian());
    EXPECT_EQ(b.getBitSize(), 0);
    EXPECT_EQ(b.getReadPos(), 0);
    // 6 + 1 + 1 + 24 bits fill exactly four bytes, most significant bit first.
    EXPECT_TRUE(b.writeBits(0x2A, 6));
    EXPECT_TRUE(b.writeBits(1, 1));
    EXPECT_TRUE(b.writeBits(0, 1));
    EXPECT_TRUE(b.writeBits(0x123456, 24));
    EXPECT_EQ(valid(b), (std::vector<uint8_t>{0xAA, 0x12, 0x34, 0x56}));
    unsigned long v = 0;
    EXPECT_TRUE(b.readBits(6, v));
    EXPECT_EQ(v, 0x2Au);
    EXPECT_TRUE(b.readBits(2, v));
    EXPECT_EQ(v, 2u);
    EXPECT_TRUE(b.readBits(24, v));
    EXPECT_EQ(v, 0x123456u);
    std::vector<uint8_t> out(4);
    EXPECT_EQ(b.flush(out.data(), 4), 4);
    EXPECT_EQ(out, (std::vector<uint8_t>{0xAA, 0x12, 0x34, 0x56}));
    EXPECT_EQ(b.getBitSize(), 0);
    EXPECT_TRUE(b.getBytes().empty());
}

TEST(BitBuffer, CountsAndLimits) {
    BitBuffer b;
    unsigned long v = 7;
    EXPECT_FALSE(b.writeBits(1, 0));
    EXPECT_FALSE(b.writeBits(1, 65));
    EXPECT_TRUE(b.writeBits(1, -3)); // writes nothing
    EXPECT_EQ(b.getBitSize(), 0);
    // Only the low bits of the value count, and bits are set or cleared.
    EXPECT_TRUE(b.writeBits(0xFF, 8));
    b.flush(nullptr, 0);
    BitBuffer c;
    c.writeBits(0xFF, 8);
    c.flushBytes();
    EXPECT_TRUE(c.writeBits(0xFFFF, 4));
    EXPECT_EQ(c.getBitSize(), 4);
    EXPECT_EQ(c.getBytes()[0] >> 4, 0xF);
    EXPECT_TRUE(c.writeBits(0, 4));
    EXPECT_EQ(c.getBytes()[0], 0xF0);

    BitBuffer r;
    r.writeBits(0x0123456789ABCDEFul, 64);
    EXPECT_FALSE(r.readBits(0, v));
    EXPECT_FALSE(r.readBits(65, v));
    EXPECT_EQ(v, 7u);
    EXPECT_TRUE(r.readBits(-1, v));
    EXPECT_EQ(v, 0u);
    EXPECT_EQ(r.getReadPos(), 0);
    EXPECT_TRUE(r.readBits(64, v));
    EXPECT_EQ(v, 0x0123456789ABCDEFul);
    EXPECT_EQ(r.getReadPos(), r.getBitSize());
    v = 9;
    EXPECT_FALSE(r.readBits(1, v));
    EXPECT_EQ(v, 9u);
}

TEST(BitBuffer, UnalignedFieldsUpToSixtyFourBits) {
    // Every offset and width, across the nine-byte span, against a slow model.
    for (long offset = 0; offset < 8; ++offset) {
        for (long width = 1; width <= 64; ++width) {
            BitBuffer b;
            b.writeBits(0x5, offset > 0 ? offset : -1);
            const unsigned long value = 0xF0E1D2C3B4A59687ul;
            const unsigned long expected = width == 64 ? value : value & ((1ul << width) - 1);
            ASSERT_TRUE(b.writeBits(value, width));
            b.writeBits(0x3, 2);
            unsigned long head = 0, got = 0, tail = 0;
            if (offset > 0) {
                ASSERT_TRUE(b.readBits(offset, head));
            }
            ASSERT_TRUE(b.readBits(width, got)) << offset << " " << width;
            EXPECT_EQ(got, expected) << offset << " " << width;
            ASSERT_TRUE(b.readBits(2, tail));
            EXPECT_EQ(tail, 3u);
        }
    }
}

TEST(BitBuffer, ByteOrderOfIntegersAndFloats) {
    BitBuffer le;
    EXPECT_TRUE(le.write<unsigned short>(0x1234));
    EXPECT_EQ(valid(le), (std::vector<uint8_t>{0x34, 0x12}));
    EXPECT_TRUE(le.write<int>(-2));
    EXPECT_TRUE(le.write<long>(0x0102030405060708l));
    short s = 0;
    int i = 0;
    long l = 0;
    EXPECT_TRUE(le.read(s));
    EXPECT_EQ(s, 0x1234);
    EXPECT_TRUE(le.read(i));
    EXPECT_EQ(i, -2);
    EXPECT_TRUE(le.read(l));
    EXPECT_EQ(l, 0x0102030405060708l);

    BitBuffer be;
    be.setBigEndian(true);
    EXPECT_TRUE(be.isBigEndian());
    be.write<unsigned short>(0x1234);
    EXPECT_EQ(valid(be), (std::vector<uint8_t>{0x12, 0x34}));

    // Floats round-trip only big endian; little endian gives the bytes reversed.
    const float f = 1.5f;
    be.writeFloat(f);
    be.writeDouble(-2.25);
    unsigned short us = 0;
    be.read(us);
    float fb = 0;
    double db = 0;
    EXPECT_TRUE(be.readFloat(fb));
    EXPECT_EQ(fb, f);
    EXPECT_TRUE(be.read(db));
    EXPECT_EQ(db, -2.25);

    BitBuffer lf;
    lf.writeFloat(f);
    float back = 0;
    EXPECT_TRUE(lf.readFloat(back));
    uint32_t fbits, backBits;
    std::memcpy(&fbits, &f, 4);
    std::memcpy(&backBits, &back, 4);
    EXPECT_EQ(backBits, __builtin_bswap32(fbits));

    // The block forms give what the single ones give, aligned and not.
    for (int shift : {0, 3}) {
        for (bool big : {false, true}) {
            BitBuffer one, block;
            one.setBigEndian(big);
            block.setBigEndian(big);
            if (shift) {
                one.writeBits(5, shift);
                block.writeBits(5, shift);
            }
            const float values[3] = {1.0f, -0.5f, 3.25e7f};
            for (float v : values) one.writeFloat(v);
            EXPECT_TRUE(block.writeFloats(values, 3));
            EXPECT_EQ(valid(one), valid(block));
            unsigned long skip;
            if (shift) {
                one.readBits(shift, skip);
                block.readBits(shift, skip);
            }
            float a[3], b[3];
            for (float& v : a) one.readFloat(v);
            EXPECT_TRUE(block.readFloats(b, 3));
            EXPECT_EQ(std::memcmp(a, b, sizeof a), 0);
            EXPECT_FALSE(block.readFloats(b, 1));
        }
    }
}

TEST(BitBuffer, BytesFeedFlushClearRead) {
    BitBuffer b;
    EXPECT_TRUE(b.writeBytes(nullptr, 0));
    EXPECT_FALSE(b.writeBytes(nullptr, 2));
    const uint8_t data[3] = {0xDE, 0xAD, 0xBE};
    EXPECT_TRUE(b.writeBytes(data, -1));
    EXPECT_EQ(b.getBitSize(), 0);
    EXPECT_TRUE(b.writeBits(1, 1));
    EXPECT_TRUE(b.writeBytes(data, 3)); // unaligned: bit by bit
    EXPECT_EQ(b.getBitSize(), 25);
    unsigned long bit;
    b.readBits(1, bit);
    uint8_t got[3] = {};
    EXPECT_FALSE(b.readBytes(nullptr, 3));
    EXPECT_TRUE(b.readBytes(got, 3));
    EXPECT_EQ(std::memcmp(got, data, 3), 0);
    EXPECT_FALSE(b.readBytes(got, 1));

    // flush keeps the partial byte at the front.
    BitBuffer f;
    f.writeBits(0xABC, 12);
    EXPECT_EQ(f.flush(nullptr, 0), 1);
    uint8_t one = 0;
    EXPECT_THROW(f.flush(&one, 0), sorvane::RuntimeException);
    EXPECT_EQ(f.flush(&one, 1), 1);
    EXPECT_EQ(one, 0xAB);
    EXPECT_EQ(f.getBitSize(), 4);
    ASSERT_EQ(f.getBytes().size(), 1u);
    EXPECT_EQ(f.getBytes()[0] >> 4, 0xC);
    try {
        f.feed(nullptr, 1);
        FAIL();
    } catch (const sorvane::RuntimeException& e) {
        EXPECT_NE(std::string(e.what()).find("feed(): buffer is NULL"), std::string::npos);
    }
    std::vector<uint8_t> big(5);
    EXPECT_THROW(f.flush(big.data(), -1), sorvane::RuntimeException);

    // clearRead drops whole read bytes and keeps the bit offset.
    BitBuffer c;
    c.feed(std::vector<uint8_t>{1, 2, 3, 4});
    unsigned long v;
    c.readBits(12, v);
    c.clearRead();
    EXPECT_EQ(c.getReadPos(), 4);
    EXPECT_EQ(c.getBitSize(), 24);
    EXPECT_EQ(c.getBytes(), (std::vector<uint8_t>{2, 3, 4}));
    c.readBits(4, v);
    EXPECT_EQ(v, 2u);

    // A long-running reader: memory stays bounded by the unread bytes.
    BitBuffer r;
    std::vector<uint8_t> chunk(1000);
    for (int round = 0; round < 100; ++round) {
        for (size_t i = 0; i < chunk.size(); ++i) chunk[i] = static_cast<uint8_t>(round + i);
        r.feed(chunk);
        for (size_t i = 0; i < chunk.size(); ++i) {
            ASSERT_TRUE(r.readBits(8, v));
            ASSERT_EQ(v, static_cast<uint8_t>(round + i));
            if (i % 100 == 99) r.clearRead();
        }
        EXPECT_EQ(r.getReadPos(), 0);
        EXPECT_EQ(r.getBitSize(), 0);
    }
    EXPECT_TRUE(r.getBytes().empty());
    r.clear();
    EXPECT_EQ(r.storedSize(), 0);

    // feed after an unaligned write appends behind the partial byte.
    BitBuffer u;
    u.writeBits(1, 1);
    u.feed(std::vector<uint8_t>{0x55});
    EXPECT_EQ(u.getBitSize(), 9);
    EXPECT_EQ(u.getBytes(), (std::vector<uint8_t>{0x80, 0x55}));
}
