// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QVariant>

#include <gtest/gtest.h>
#include <initializer_list>
#include <optional>
#include <vector>

namespace velmora::test {

// Unlike QVariant's ==, tells 5 from 5u and null text from empty, and takes NaN for NaN.
::testing::AssertionResult sameValue(const QVariant& actual, const QVariant& expected);

// Encoded "bplist00" objects, so that tests state exact bytes, the wrong ones included.
// References are one byte.
namespace bplist {

QByteArray bytes(std::initializer_list<int> values);
QByteArray bigEndian(quint64 value, int size);
// A marker with its count: in the low nibble, or as an integer object after 0xF.
QByteArray head(int type, quint64 count);
QByteArray integer(qint64 value);
QByteArray ascii(const QByteArray& text);
QByteArray real(double value);
QByteArray date(double secondsSince2001);
QByteArray array(std::initializer_list<int> refs, int type = 0xA);
QByteArray dict(std::initializer_list<int> keys, std::initializer_list<int> values);

struct Trailer {
    int offsetSize = 2;
    int refSize = 1;
    std::optional<quint64> objectCount = {}; // the number of objects given when unset
    quint64 topObject = 0;
    std::optional<quint64> tableOffset = {}; // where the table really is when unset
};

// The file: header, objects in order, offset table and trailer.
QByteArray file(const std::vector<QByteArray>& objects, const Trailer& trailer = {});

} // namespace bplist
} // namespace velmora::test
