#include "model/gaugefile.h"
#include "randomuser.h"
#include "support/files.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int usualActions = 5000;
constexpr int actionsPerWindow = 1000;

/// A layer that paints fast, and one with values that the controls cannot show.
QByteArray ownDocument()
{
    gaugeData layer = sampleLayer();
    layer.divisionCount = {4, 3, 2};
    gaugeData outOfRange = layer;
    outOfRange.startAngle = 1234.5678;
    outOfRange.bias = 7.25;
    outOfRange.divisionCount = {101, -7, -3};
    outOfRange.divisionInnerRadius = {-3.0, 2.5, 1e9};
    outOfRange.arcStartAngle = {-1e6, 1e300, 0.001, 719.0};
    outOfRange.tickCountIncrement = -1e6;
    outOfRange.tickCountDecimalPlaces = 11;
    return gaugeFile::write({{u"Sample"_s, layer}, {u"Out, of \"range\""_s, outOfRange}});
}

/// Whether a file takes too long to paint after each action: some have thousands of millions of ticks.
bool isSlow(const QString &path)
{
    QList<gaugeLayer> layers;
    gaugeFile::read(readFile(path), &layers, nullptr);
    return std::any_of(layers.begin(), layers.end(), [](const gaugeLayer &layer) {
        const auto &counts = layer.data.divisionCount;
        return counts[0] > 20 || counts[1] > 10 || counts[2] > 10;
    });
}

} // namespace

/// Random actions in a window. Whatever they are, the window, the layers and the preview match.
///
/// CORVALENCE_RANDOM_ACTIONS sets the number of actions; each 1000 have their own seed and window.
/// CORVALENCE_RANDOM_SEED runs a single seed.
class tst_RandomUse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void windowMatchesThePrediction_data();
    void windowMatchesThePrediction();

private:
    QTemporaryDir m_folder;
    QStringList m_documents;
};

void tst_RandomUse::initTestCase()
{
    QVERIFY(m_folder.isValid());
    const QString path = m_folder.filePath(u"sample.gauge"_s);
    writeFile(path, ownDocument());
    m_documents.append(path);
    const QDir corpus(testDataPath(u"documents"_s));
    for (const QString &name : corpus.entryList(QDir::Files, QDir::Name)) {
        if (!isSlow(corpus.filePath(name)))
            m_documents.append(corpus.filePath(name));
    }
    QVERIFY(m_documents.size() > 20);
}

void tst_RandomUse::windowMatchesThePrediction_data()
{
    QTest::addColumn<quint64>("seed");
    if (qEnvironmentVariableIsSet("CORVALENCE_RANDOM_SEED")) {
        QTest::newRow("seed") << qEnvironmentVariable("CORVALENCE_RANDOM_SEED").toULongLong();
        return;
    }
    bool isNumber = false;
    const int actions = qEnvironmentVariableIntValue("CORVALENCE_RANDOM_ACTIONS", &isNumber);
    const int windows = (isNumber ? actions : usualActions) / actionsPerWindow;
    for (int seed = 1; seed <= std::max(1, windows); ++seed)
        QTest::addRow("seed %d", seed) << static_cast<quint64>(seed);
}

void tst_RandomUse::windowMatchesThePrediction()
{
    QFETCH(const quint64, seed);
    failOnUnexpectedWarnings(u"QFont::fromString: Invalid description "_s);
    const QString presets = QCoreApplication::applicationDirPath() + u"/Presets/"_s;
    QDir(presets).removeRecursively();
    QVERIFY(QDir().mkpath(presets));
    for (const QString &path : std::as_const(m_documents))
        QVERIFY(QFile::copy(path, presets + QFileInfo(path).fileName()));

    Editor editor;
    editor.show();
    RandomUser user(editor, seed, m_documents, m_folder.path(), presets);
    for (int action = 1; action <= actionsPerWindow; ++action) {
        user.act();
        const QString problem = user.problem();
        if (!problem.isEmpty() || QTest::currentTestFailed())
            QFAIL(qPrintable(u"seed %1, action %2: %3\nthe last actions:\n  %4"_s.arg(seed).arg(action).arg(
                problem, user.lastActions().join(u"\n  "_s))));
    }
    QDir(presets).removeRecursively();
}

ADD_TEST_CLASS(tst_RandomUse)
#include "tst_randomuse.moc"
