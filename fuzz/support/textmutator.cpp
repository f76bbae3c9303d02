#include "textmutator.h"

#include "values.h"

#include <QByteArrayList>

#include <array>

namespace {

constexpr qsizetype fixedFields = 48;

QByteArray someField(qsizetype index, Random &random)
{
    if (random.oneIn(30))
        return someText(random);
    if ((index >= 17 && index <= 19) || (index >= 37 && index <= 40))
        return someColor(random);
    if (index == 3 || index == 4 || index == 20 || index == 41 || index == 46 || index == 47)
        return random.oneIn(4) ? someInteger(random) : QByteArray::number(random.below(2));
    if ((index >= 5 && index <= 7) || index == 44)
        return someInteger(random);
    return someNumber(random);
}

/// The fields of a font as one version of Qt or another writes them, or not.
QByteArrayList someFont(Random &random)
{
    constexpr std::array<size_t, 7> lengths{16, 17, 10, 11, 9, 2, 1};
    QByteArrayList fields{someText(random), random.oneIn(3) ? someNumber(random) : QByteArray("12")};
    for (const size_t length = random.oneIn(8) ? random.below(30) : random.pick(lengths);
         static_cast<size_t>(fields.size()) < length;)
        fields.append(random.oneIn(4) ? someNumber(random) : someInteger(random));
    return fields;
}

void damageFields(QByteArrayList &fields, Random &random)
{
    const auto at = static_cast<qsizetype>(random.below(static_cast<size_t>(fields.size())));
    const auto other = static_cast<qsizetype>(random.below(static_cast<size_t>(fields.size())));
    switch (random.below(8)) {
    case 0:
        fields.removeAt(at);
        break;
    case 1:
        fields.insert(at, someField(other, random));
        break;
    case 2:
        fields.swapItemsAt(at, other);
        break;
    case 3: // about as many as are needed
        fields.resize(static_cast<qsizetype>(48 + random.below(5)));
        break;
    case 4: // another font
        if (fields.size() > fixedFields + 1) {
            const QByteArray color = fields.last();
            fields = fields.first(fixedFields) + someFont(random);
            fields.append(color);
        }
        break;
    case 5:
        fields[at].clear();
        break;
    default:
        fields[at] = someField(at, random);
        break;
    }
    if (fields.isEmpty())
        fields.append(QByteArray());
}

} // namespace

QByteArray someOlderForm(Random &random)
{
    QByteArrayList fields;
    for (qsizetype index = 0; index < fixedFields; ++index)
        fields.append(someField(index, random));
    fields += someFont(random);
    fields.append(someColor(random));
    return fields.join(',');
}

QByteArray damagedOlderForm(const QByteArray &text, Random &random)
{
    QByteArrayList fields = text.split(',');
    for (size_t damages = 1 + random.below(4); damages > 0; --damages)
        damageFields(fields, random);
    return fields.join(',');
}

QByteArray crossedOlderForms(const QByteArray &first, const QByteArray &second, Random &random)
{
    const QByteArrayList start = first.split(',');
    const QByteArrayList end = second.split(',');
    const auto cut = static_cast<qsizetype>(random.below(static_cast<size_t>(start.size()) + 1));
    return (start.first(cut) + end.mid(cut)).join(',');
}
