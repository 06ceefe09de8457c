#include "quiver/values/RealReader.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace QvXmlLib9;

TEST(RealReader, RealNumbersReadToTheNearestDouble)
{
    EXPECT_EQ(ReadReal(L"0.1").value, 0.1);
    EXPECT_EQ(ReadReal(L"-1.5e3x").value, -1500.0);
    EXPECT_EQ(ReadReal(L"9007199254740993").value, 9007199254740992.0);
    EXPECT_EQ(ReadReal(L"1e400").value, std::numeric_limits<double>::infinity());
    EXPECT_EQ(ReadReal(L"1e-400").value, 0.0);
    const wchar_t* const lpctWord = L"inf";
    EXPECT_EQ(ReadReal(lpctWord).pStop, lpctWord);
}

TEST(RealReader, ExponentsOfAnyNumberOfDigitsMoveThePoint)
{
    const struct
    {
        const wchar_t* lpctText;
        double dValue;
    } rows[] = {{L"1e0", 1e0},
                {L"1e9", 1e9},
                {L"1e10", 1e10},
                {L"1e+11", 1e11},
                {L"1e010", 1e10},
                {L"1e22", 1e22},
                {L"1e23", 1e23},
                {L"123.5e15", 123.5e15},
                {L"1e-10", 1e-10},
                {L"1E-22", 1e-22},
                {L"-7.25e-19", -7.25e-19},
                {L"1e100", 1e100},
                {L"1e-100", 1e-100},
                {L"12345e-300", 12345e-300}};
    for (const auto& row : rows)
    {
        const SNumberText<double> number = ReadReal(row.lpctText);
        EXPECT_EQ(number.value, row.dValue) << QvTest::Show(row.lpctText);
        EXPECT_EQ(*number.pStop, 0) << QvTest::Show(row.lpctText);
    }
}

TEST(RealReader, WhatFitsNoDoubleIsInfiniteOrZero)
{
    constexpr double dInfinity = std::numeric_limits<double>::infinity();
    const std::wstring strZeros(400, L'0');
    const struct
    {
        std::wstring strText;
        double dValue;
    } rows[] = {
        {L"1e309", dInfinity},
        {L"-1e309", -dInfinity},
        {L"1e99999999999999999999", dInfinity},
        {L"1e-99999999999999999999", 0},
        {L"0e99999999999999999999", 0},
        {L"1" + strZeros, dInfinity},
        {L"0." + strZeros + L"1", 0},
        {strZeros + L"1e-330", 0},
        {strZeros + L"12.5e309", dInfinity},
        {strZeros + L"12.5e-400", 0},
        {L"0." + strZeros + L"1e+800", dInfinity},
        {L"0." + strZeros + L"1e+401", 1},
        {L"1" + strZeros + L"e-400", 1},
        {L"1" + strZeros + L"e-800", 0},
        {L"1" + strZeros + L".5e-750", 0},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(QvTest::Show(row.strText));
        const SNumberText<double> number = ReadReal(row.strText.c_str());
        EXPECT_EQ(number.value, row.dValue);
        EXPECT_EQ(number.bOutOfRange, row.dValue == dInfinity || row.dValue == -dInfinity);
        EXPECT_EQ(*number.pStop, 0);
    }
}
