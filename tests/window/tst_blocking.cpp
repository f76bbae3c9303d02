#include "support/editor.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

/// Which controls keep silent while a layer is shown in them.
class tst_Blocking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void thereAreFiftyBoundControls();
    void controlIsBlocked_data();
    void controlIsBlocked();
    void nothingElseIsBlocked();
    void controlTellsNobody_data();
    void controlTellsNobody();
    void signalsComeAgainAfterwards();
};

void tst_Blocking::thereAreFiftyBoundControls()
{
    const QStringList names = boundControls();
    QCOMPARE(names.size(), 50);
    QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), 50);
}

void tst_Blocking::controlIsBlocked_data()
{
    QTest::addColumn<int>("order");
    int order = 0;
    for (const QString &name : boundControls())
        QTest::newRow(qPrintable(name)) << ++order;
}

void tst_Blocking::controlIsBlocked()
{
    Editor editor;
    const auto *control = editor.control<QWidget>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(!control->signalsBlocked());
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "blockWidgetSignals", Q_ARG(bool, true)));
    QVERIFY(control->signalsBlocked());
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "blockWidgetSignals", Q_ARG(bool, false)));
    QVERIFY(!control->signalsBlocked());
}

void tst_Blocking::nothingElseIsBlocked()
{
    Editor editor;
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "blockWidgetSignals", Q_ARG(bool, true)));
    QStringList blocked;
    const auto widgets = editor.window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (widget->signalsBlocked())
            blocked.append(widget->objectName());
    }
    blocked.sort();
    QStringList expected = boundControls();
    expected.sort();
    QCOMPARE(blocked, expected);
}

void tst_Blocking::controlTellsNobody_data()
{
    controlIsBlocked_data();
}

void tst_Blocking::controlTellsNobody()
{
    Editor editor;
    auto *control = editor.control<QWidget>(QString::fromLatin1(QTest::currentDataTag()));
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    const QMetaObject &meta = *control->metaObject();
    for (int index = QWidget::staticMetaObject.methodCount(); index < meta.methodCount(); ++index) {
        if (meta.method(index).methodType() == QMetaMethod::Signal)
            spies.push_back(std::make_unique<QSignalSpy>(control, meta.method(index)));
    }
    QVERIFY(!spies.empty());
    editor.preview()->workingLayer = sampleLayer();
    editor.call("setActiveGauge");
    for (const auto &spy : spies)
        QCOMPARE(spy->count(), 0);
}

void tst_Blocking::signalsComeAgainAfterwards()
{
    Editor editor;
    QVERIFY(QMetaObject::invokeMethod(&editor.window, "blockWidgetSignals", Q_ARG(bool, true)));
    editor.call("setActiveGauge");
    for (const QString &name : boundControls())
        QVERIFY2(!editor.control<QWidget>(name)->signalsBlocked(), qPrintable(name));
}

ADD_TEST_CLASS(tst_Blocking)
#include "tst_blocking.moc"
