#ifndef TESTMAIN_H
#define TESTMAIN_H

class QObject;

/// Adds a test class to the program that its source file belongs to. Use ADD_TEST_CLASS.
class TestClass
{
public:
    using Create = QObject *(*)();

    TestClass(const char *name, Create create);
};

/// The program runs all its test classes, or the one that its first argument names; other arguments are
/// those of QTest.
#define ADD_TEST_CLASS(Class)                                                                                \
    static const TestClass added##Class(#Class, []() -> QObject * { return new Class; });

#endif
