#include "model/layerselection.h"

#include "model/gaugedata.h"

#include <algorithm>

QList<qsizetype> findLayers(const QString &value, const QList<gaugeLayer> &layers, QString &unknown)
{
    QList<qsizetype> rows;
    const auto append = [&layers, &rows](const auto &isMeant) {
        const qsizetype before = rows.size();
        for (qsizetype row = 0; row < layers.size(); ++row) {
            if (isMeant(layers.at(row).name))
                rows.append(row);
        }
        return rows.size() > before;
    };
    const auto appendNamed = [&append](const QString &text) {
        return append([&text](const QString &name) { return name == text; });
    };
    const auto appendMatching = [&append](const QString &text) {
        return text.endsWith(QLatin1Char('*')) &&
               append([&text](const QString &name) { return name.startsWith(text.chopped(1)); });
    };
    if (appendNamed(value))
        return rows;
    for (const QString &part : value.split(QLatin1Char(','))) {
        if (appendNamed(part.trimmed()) || appendMatching(part.trimmed()))
            continue;
        bool isNumber = false;
        const int number = part.toInt(&isNumber);
        if (isNumber && number >= 1 && number <= layers.size())
            rows.append(number - 1);
        else // empty but not null: null means that all parts were found
            unknown = part.trimmed().isEmpty() ? QLatin1String("") : part.trimmed();
    }
    return rows;
}

QString describeUnknownLayer(const QString &name, const QList<gaugeLayer> &layers)
{
    constexpr qsizetype maxNames = 20;
    constexpr qsizetype maxLength = 60;
    QStringList names;
    for (const gaugeLayer &layer : layers.first(std::min(layers.size(), maxNames))) {
        const bool isLong = layer.name.size() > maxLength;
        const QString shown = isLong ? layer.name.first(maxLength) + QLatin1String("...") : layer.name;
        names.append(QStringLiteral("\"%1\"").arg(shown));
    }
    if (layers.size() > maxNames)
        names.append(QStringLiteral("and %1 more").arg(layers.size() - maxNames));
    return QStringLiteral("There is no layer \"%1\". The layers are %2.")
        .arg(name, names.join(QLatin1String(", ")));
}
