#include "documents.h"
#include "randomuser.h"
#include "support/testmain.h"
#include "warningwatch.h"
#include "window.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int usualActions = 5000;
constexpr int actionsPerWindow = 1000;

} // namespace

/// Somebody plays with the editor: whatever they do, the window, the stack and the preview stay in step.
///
/// CORVALENCE_RANDOM_ACTIONS sets how many things are done, a thousand with each seed in a window of its own.
/// CORVALENCE_RANDOM_SEED has one seed alone played.
class tst_RandomUse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void keepsEverythingInStep_data();
    void keepsEverythingInStep();

private:
    QTemporaryDir m_folder;
    QStringList m_documents;
};

void tst_RandomUse::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_documents = writeDocuments(m_folder.path());
    QStringList corpus;
    QDirIterator iterator(QStringLiteral(CORVALENCE_TEST_DATA), QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext())
        corpus.append(iterator.next());
    corpus.sort();
    for (const QString &path : std::as_const(corpus)) {
        const QString reason = unfitForUse(path);
        if (reason.isEmpty())
            m_documents.append(path);
        else
            qInfo("left out %s: %s", qPrintable(QFileInfo(path).fileName()), qPrintable(reason));
    }
}

void tst_RandomUse::keepsEverythingInStep_data()
{
    QTest::addColumn<quint64>("seed");
    const auto addSeed = [](quint64 seed) { QTest::addRow("seed %llu", seed) << seed; };
    if (qEnvironmentVariableIsSet("CORVALENCE_RANDOM_SEED")) {
        addSeed(qEnvironmentVariable("CORVALENCE_RANDOM_SEED").toULongLong());
        return;
    }
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("CORVALENCE_RANDOM_ACTIONS", &isNumber);
    const int windows = (isNumber ? wanted : usualActions) / actionsPerWindow;
    for (int seed = 1; seed <= qMax(1, windows); ++seed)
        addSeed(static_cast<quint64>(seed));
}

void tst_RandomUse::keepsEverythingInStep()
{
    QFETCH(const quint64, seed);
    const QString presets = QCoreApplication::applicationDirPath() + QLatin1String("/Presets/");
    QDir(presets).removeRecursively();
    QVERIFY(QDir().mkpath(presets));
    writeDocuments(presets);

    const WarningWatch watch;
    Window window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    RandomUser user(window, seed, m_documents, m_folder.path(), presets);
    for (int action = 1; action <= actionsPerWindow; ++action) {
        user.act();
        QString problem = user.problem();
        if (problem.isEmpty())
            problem = user.previewProblem();
        if (!problem.isEmpty()) {
            QFAIL(qPrintable(QStringLiteral("seed %1, action %2: %3\nthe last actions:\n  %4")
                                 .arg(QString::number(seed), QString::number(action), problem,
                                      user.lastActions().join(QLatin1String("\n  ")))));
        }
    }
    QDir(presets).removeRecursively();
}

ADD_TEST_CLASS(tst_RandomUse)
#include "tst_randomuse.moc"
