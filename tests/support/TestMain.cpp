#include <gmock/gmock.h>

#include <clocale>
#include <ctime>

// The environment's locale and time zone are taken on, so that the same tests can run under others and show that no
// result depends on them.
int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "");
    tzset();
    ::testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
