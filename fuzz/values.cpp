#include "values.h"

#include <array>
#include <bit>

namespace {

const QByteArrayList usualNumbers = QByteArray("0 1 0.5 0.8 0.95 10 90 120 270 -45 360").split(' ');

const QByteArrayList oddNumbers =
    QByteArray(
        "-0 -1 -360 359.99999999999994 360.00000000000006 0.49999999999999994 1e-9 5e-324 1e300 -1e300 "
        "1.7976931348623157e308 -1.7976931348623157e308 1e20 -1e18 1e15 1e9 -1e9 134217728 -134217728.03125 "
        "1e999 -1e999 2147483647 2147483648 -2147483649 9007199254740993 18446744073709551616 4.0 4e0 2.5 "
        "4.0000000000000001 00 +1 .5 1. 0x10 1e --1 nan NaN inf -inf Infinity 1,5 ")
        .split(' ');

const QByteArrayList integers =
    QByteArray("0 1 2 3 4 5 6 8 12 17 40 -1 -4 323 1074 1075 100000 65536 2147483646 2147483647 2147483648 "
               "-2147483648 -2147483649 4.0")
        .split(' ');

const QByteArrayList colors =
    QByteArray(
        "#ffffff|#0F0|#12345|#80ff0000|#00ffffff|#fff000fff|#ffff0000ffff|red|Red|light blue|transparent|"
        "nocolour|#gggggg|#|| #ffffff|#ffffff |rgb(1,2,3)")
        .split('|');

const QByteArrayList texts =
    QByteArray(
        "|Layer 1|Sans Serif|Helvetica, Arial|'quoted'|\"|\\|%1%2%99|a\tb\nc\rd|<b>&amp;</b>|a & b|]]>|"
        "\xc3\xa9\xce\xa9|\xd8\xa7\xd9\x84|\xf0\x9f\x95\xb0|\xe2\x80\xae|\xef\xbb\xbf|\xc0\x80|\xed\xa0\x80|"
        "\xff\xfe|\x01\x1f\x7f|   |Monospace,12,-1,5,50,0,0,0,0,0")
        .split('|');

} // namespace

QByteArray someNumber(Random &random)
{
    switch (random.below(8)) {
    case 0:
    case 1:
    case 2:
        return random.pick(usualNumbers);
    case 3:
    case 4:
        return random.pick(oddNumbers);
    case 5: // any bit pattern
        return QByteArray::number(std::bit_cast<double>(random.next()), 'g', 17);
    case 6:
        return someInteger(random);
    default:
        return QByteArray::number(random.between(-100000, 100000) / 100.0, 'g', 17);
    }
}

QByteArray someInteger(Random &random)
{
    return random.oneIn(4) ? QByteArray::number(static_cast<int>(random.next())) : random.pick(integers);
}

QByteArray someColor(Random &random)
{
    return random.oneIn(2) ? '#' + QByteArray::number(0x1000000 + random.between(0, 0xffffff), 16).last(6)
                           : random.pick(colors);
}

QByteArray someText(Random &random)
{
    QByteArray text = random.pick(texts);
    if (random.oneIn(8))
        text += random.pick(texts);
    return random.oneIn(40) ? text.repeated(random.between(1, 100)) : text;
}

void damageBytes(QByteArray &bytes, Random &random)
{
    static const std::array<QByteArray, 6> prefixes{"\xef\xbb\xbf", "\n\t\r ",          "[", "x",
                                                    "\xff\xfe",     QByteArray(1, '\0')};
    const int at = random.between(0, static_cast<int>(bytes.size()));
    const auto byte = static_cast<char>(random.below(256));
    switch (random.below(6)) {
    case 0:
        bytes.truncate(at);
        break;
    case 1:
        bytes.remove(at, 1);
        break;
    case 2:
        bytes.insert(at, byte);
        break;
    case 3:
        bytes.prepend(random.pick(prefixes));
        break;
    case 4:
        bytes.append(random.pick(prefixes));
        break;
    default:
        bytes.replace(at, 1, QByteArray(1, byte));
        break;
    }
}
