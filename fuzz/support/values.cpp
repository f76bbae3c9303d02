#include "values.h"

#include <array>
#include <bit>

namespace {

constexpr std::array ordinaryNumbers{"0", "1", "0.5", "0.8", "0.95", "10", "90", "120", "270", "-45", "360"};

constexpr std::array oddNumbers{
    "-0",
    "-1",
    "-360",
    "359.99999999999994",
    "360.00000000000006",
    "0.49999999999999994",
    "1e-9",
    "5e-324",
    "2.2250738585072014e-308",
    "1.7976931348623157e308",
    "-1.7976931348623157e308",
    "1e300",
    "-1e300",
    "1e20",
    "-1e18",
    "1e15",
    "1e9",
    "-1e9",
    "134217727.96875",
    "134217728",
    "-134217728.03125",
    "1e999",
    "-1e999",
    "2147483647",
    "2147483648",
    "-2147483648",
    "-2147483649",
    "4294967296",
    "9007199254740993",
    "9223372036854775807",
    "9223372036854775808",
    "18446744073709551616",
    "4.0",
    "4e0",
    "2.5",
    "4.0000000000000001",
    "00",
    "+1",
    ".5",
    "1.",
    "0x10",
    "1e",
    "--1",
    "nan",
    "NaN",
    "inf",
    "-inf",
    "Infinity",
    "1 ",
    " 1",
    "1,5",
    "",
    "000000000000000000000000000000000000000000000000000000000000000000000001",
    "0.3333333333333333333333333333333333333333333333333333333333333333333333333333",
};

constexpr std::array integers{"0",     "1",          "2",          "3",           "4",           "5",
                              "6",     "8",          "12",         "17",          "40",          "-1",
                              "-4",    "323",        "1074",       "1075",        "100000",      "2147483646",
                              "65536", "2147483647", "2147483648", "-2147483648", "-2147483649", "4.0"};

constexpr std::array colors{"#ffffff",   "#000000",    "#00ff00",     "#0F0",          "#12345",
                            "#80ff0000", "#00ffffff",  "#fff000fff",  "#ffff0000ffff", "red",
                            "Red",       "light blue", "transparent", "nocolour",      "#gggggg",
                            "#",         "",           " #ffffff",    "#ffffff ",      "rgb(1,2,3)"};

constexpr std::array texts{"",
                           "Layer 1",
                           "Sans Serif",
                           "DejaVu Sans",
                           "Helvetica, Arial",
                           "'quoted'",
                           "\"",
                           "\\",
                           "%1%2%99",
                           "a\tb\nc\rd",
                           "<b>&amp;</b>",
                           "]]>",
                           "\xc3\xa9\xc3\x9f\xce\xa9",
                           "\xd8\xa7\xd9\x84\xd8\xb9",
                           "\xf0\x9f\x95\xb0",
                           "\xe2\x80\xae"
                           "abc",
                           "\xef\xbb\xbf",
                           "\xc0\x80",
                           "\xed\xa0\x80",
                           "\xff\xfe",
                           "\x01\x1f\x7f",
                           "   ",
                           "Monospace,12,-1,5,50,0,0,0,0,0"};

/// Every pattern of bits that is a double, and so every size from the smallest to the largest.
QByteArray anyDouble(Random &random)
{
    return QByteArray::number(std::bit_cast<double>(random.next()), 'g', 17);
}

} // namespace

QByteArray someNumber(Random &random)
{
    switch (random.below(8)) {
    case 0:
    case 1:
    case 2:
        return random.pick(ordinaryNumbers);
    case 3:
    case 4:
        return random.pick(oddNumbers);
    case 5:
        return anyDouble(random);
    case 6:
        return someInteger(random);
    default:
        return QByteArray::number(static_cast<double>(random.below(200001)) / 100.0 - 1000.0, 'g', 17);
    }
}

QByteArray someInteger(Random &random)
{
    if (random.oneIn(4))
        return QByteArray::number(static_cast<int>(static_cast<uint32_t>(random.next())));
    return random.pick(integers);
}

QByteArray someColor(Random &random)
{
    if (random.oneIn(2))
        return '#' +
               QByteArray::number(static_cast<uint>(random.below(0x1000000)), 16).rightJustified(6, '0');
    return random.pick(colors);
}

QByteArray someText(Random &random)
{
    QByteArray text = random.pick(texts);
    if (random.oneIn(8))
        text += random.pick(texts);
    if (random.oneIn(40))
        text = text.repeated(static_cast<qsizetype>(1 + random.below(100)));
    return text;
}

void damageBytes(QByteArray &bytes, Random &random)
{
    static const std::array<QByteArray, 8> inFront{"\xef\xbb\xbf", " ", "\n\t\r ",          "[", "x",
                                                   "\xff\xfe",     ",", QByteArray(1, '\0')};
    const auto at = static_cast<qsizetype>(random.below(static_cast<size_t>(bytes.size()) + 1));
    const auto anyByte = static_cast<char>(random.below(256));
    switch (random.below(7)) {
    case 0:
        bytes.truncate(at);
        break;
    case 1:
        bytes.remove(at, 1);
        break;
    case 2:
        bytes.insert(at, anyByte);
        break;
    case 3:
        if (at < bytes.size())
            bytes[at] = anyByte;
        break;
    case 4:
        bytes.prepend(random.pick(inFront));
        break;
    case 5:
        bytes.append(random.pick(inFront));
        break;
    default:
        bytes.remove(0, at);
        break;
    }
}
