#include "documents.h"
#include "model/gaugefile.h"
#include "support/dialogs.h"
#include "support/network.h"
#include "support/testmain.h"
#include "support/warnings.h"
#include "window.h"

#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <optional>

namespace {

const QString cannotOpen = QStringLiteral("Unable to open file");

/// Picks @a path in the "Load" dialog and does something more before the window gets to it.
void expectFileAndThen(DialogAnswers &answers, const QString &path, const std::function<bool()> &then)
{
    answers.expect<QFileDialog>([path, then](QFileDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
        static_cast<QDialog &>(dialog).accept();
        QVERIFY(then());
    });
}

} // namespace

/// Loads that fail: what the user is told, and that the gauge stays as it was in every part.
class tst_FailedLoad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_proxy.emplace(); }
    void init();
    void cleanup();
    void cleanupTestCase();

    void tellsWhatTheContentLacks_data();
    void tellsWhatTheContentLacks();
    void tellsTheParsersReason_data();
    void tellsTheParsersReason();
    void tellsTheFileNameAsItIs_data();
    void tellsTheFileNameAsItIs();
    void tellsWhenTheFileVanished();
    void tellsWhenTheFolderBecameAFile();
    void tellsWhenTheFileIsNone();

private:
    /// Loads a file of this content and expects the warning with this reason.
    void loadContent(const QString &fileName, const QByteArray &content, const QString &reason);

    std::optional<SilentProxy> m_proxy;
    std::optional<QTemporaryDir> m_folder;
    std::optional<Window> m_window;
    std::optional<DialogAnswers> m_answers;
    QStringList m_before;
};

void tst_FailedLoad::init()
{
    failOnUnexpectedWarnings();
    m_folder.emplace();
    m_answers.emplace();
    // Three layers, the middle one active and edited: whatever a load touched would show.
    const QString path = m_folder->filePath(QStringLiteral("Start.gauge"));
    QVERIFY(writeFile(path, gaugeFile::write({{QStringLiteral("One"), sampleLayer(1)},
                                              {QStringLiteral("Two"), sampleLayer(2)},
                                              {QStringLiteral("Three"), sampleLayer(3)}})));
    m_window.emplace();
    load(*m_window, *m_answers, path);
    control<QListWidget>(*m_window, "layerList")->setCurrentRow(1);
    control<QDoubleSpinBox>(*m_window, "gaugeStartAngleSpinBox")->setValue(77.5);
    m_before = stateOf(*m_window);
}

void tst_FailedLoad::cleanup()
{
    QCOMPARE(m_answers->problems(), QStringList());
    QCOMPARE(stateOf(*m_window), m_before);
    m_window.reset();
    m_folder.reset();
}

void tst_FailedLoad::cleanupTestCase()
{
    m_proxy.reset();
}

void tst_FailedLoad::loadContent(const QString &fileName, const QByteArray &content, const QString &reason)
{
    const QString path = m_folder->filePath(fileName);
    QVERIFY(writeFile(path, content));
    load(*m_window, *m_answers, path, [&] {
        m_answers->expectMessage(&*m_window, QMessageBox::Warning, QStringLiteral("Unable to load gauge"),
                                 fileName + QLatin1String(" could not be read.\n\n") + reason);
    });
}

void tst_FailedLoad::tellsWhatTheContentLacks_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    const QString empty = QStringLiteral("The file is empty.");
    const QString noLayers = QStringLiteral("The file contains no layers.");
    const QString noGauge = QStringLiteral(
        "It is not valid JSON, and does not look like a gauge file from an earlier version either.");
    const auto row = [](const char *name, const QByteArray &content, const QString &reason) {
        QTest::newRow(name) << content << reason;
    };
    row("no bytes", {}, empty);
    row("blanks", " \r\n\t\n ", empty);
    row("no layers in the array", "{\"layers\": []}", noLayers);
    row("no layers at all", "{\"format\": \"corvalence.gauge\", \"version\": 2}", noLayers);
    row("layers that are an object", "{\"layers\": {}}", noLayers);
    row("layers that are null", "{\"layers\": null}", noLayers);
    row("an empty object", "{}", noLayers);
    row("an array", "[{\"layers\": [{}]}]", noGauge);
    row("a byte-order mark", "\xEF\xBB\xBF{\"layers\": [{}]}", noGauge);
    row("49 fields", QByteArray("0,").repeated(48) + "0", noGauge);
    row("text", "Dear diary", noGauge);
    row("a picture", QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), noGauge);
}

void tst_FailedLoad::tellsWhatTheContentLacks()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, reason);
    loadContent(QStringLiteral("Dial.gauge"), content, reason);
}

void tst_FailedLoad::tellsTheParsersReason_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray whole = gaugeFile::write({{QStringLiteral("Dial"), sampleLayer(4)}});
    QTest::newRow("an open brace") << QByteArray("{");
    QTest::newRow("cut off") << whole.left(whole.size() / 2);
    QTest::newRow("more after the end") << whole + "}";
    QTest::newRow("a trailing comma") << QByteArray("{\"layers\": [{}],}");
    QTest::newRow("not UTF-8") << QByteArray("{\"layers\": [{\"name\": \"\xFF\"}]}");
    QTest::newRow("too deep") << "{\"layers\": " + QByteArray(5000, '[') + QByteArray(5000, ']') + "}";
}

void tst_FailedLoad::tellsTheParsersReason()
{
    QFETCH(const QByteArray, content);
    QJsonParseError error;
    QVERIFY(QJsonDocument::fromJson(content.trimmed(), &error).isNull());
    loadContent(QStringLiteral("Dial.gauge"), content, error.errorString());
}

void tst_FailedLoad::tellsTheFileNameAsItIs_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::newRow("places") << QStringLiteral("%1 %2 100%.gauge");
    QTest::newRow("markup") << QStringLiteral("<b>Dial<br>.gauge");
    QTest::newRow("dots") << QStringLiteral("my.dial.gauge");
    QTest::newRow("no suffix") << QStringLiteral("Dial");
    QTest::newRow("beyond ASCII") << QStringLiteral("Zähler 🕰.gauge");
}

void tst_FailedLoad::tellsTheFileNameAsItIs()
{
    QFETCH(const QString, fileName);
    loadContent(fileName, {}, QStringLiteral("The file is empty."));
}

void tst_FailedLoad::tellsWhenTheFileVanished()
{
    const QString path = m_folder->filePath(QStringLiteral("Start.gauge"));
    expectFileAndThen(*m_answers, path, [path] { return QFile::remove(path); });
    m_answers->expectMessage(&*m_window, QMessageBox::Information, cannotOpen,
                             QStringLiteral("No such file or directory"));
    press(*m_window, "loadButton");
}

void tst_FailedLoad::tellsWhenTheFolderBecameAFile()
{
    expectFileAndThen(*m_answers, m_folder->filePath(QStringLiteral("Start.gauge")),
                      [this] { return m_folder->remove() && writeFile(m_folder->path(), "content"); });
    m_answers->expectMessage(&*m_window, QMessageBox::Information, cannotOpen,
                             QStringLiteral("Not a directory"));
    press(*m_window, "loadButton");
    QVERIFY(QFile::remove(m_folder->path()));
}

void tst_FailedLoad::tellsWhenTheFileIsNone()
{
    // A folder that came in the file's place.
    const QString path = m_folder->filePath(QStringLiteral("Start.gauge"));
    expectFileAndThen(*m_answers, path, [path] { return QFile::remove(path) && QDir().mkdir(path); });
    m_answers->expect<QMessageBox>([](QMessageBox &box) {
        QCOMPARE(box.icon(), QMessageBox::Information);
        QCOMPARE(box.windowTitle(), cannotOpen);
        QVERIFY(!box.text().isEmpty());
        box.accept();
    });
    press(*m_window, "loadButton");
}

ADD_TEST_CLASS(tst_FailedLoad)
#include "tst_failedload.moc"
