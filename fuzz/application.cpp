#include <QApplication>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QApplication app(*argc, *argv);
    return 0;
}
