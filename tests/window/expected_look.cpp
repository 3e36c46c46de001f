#include "tests/window/expected_look.h"

namespace tolvenary::test
{

namespace
{

/// The boxes that are the same in every window 520 wide whose device was found, with the column's top at 0.
std::vector<ExpectedBox> boxesOfReady()
{
    return {
        {{"column"}, {0, 0, 520, 539}},
        {{"header"}, {22, 44, 476, 53}},
        {{"title"}, {22, 44, 142.3, 36}},
        {{"subtitle"}, {22, 82, 209.3, 15}},
        {{"sourceCard"}, {22, 115, 476, 134}},
        {{"sourceCard", "heading"}, {36, 129, 448, 16}},
        {{"sourceCard", "headingIcon"}, {36, 129, 16, 16}},
        {{"sourceCard", "headingText"}, {60, 130, 78.7, 14}},
        {{"pickerRow"}, {36, 155, 448, 27}},
        {{"appPicker"}, {36, 157, 407, 23}},
        {{"appPicker", "text"}, {45, 160.5, 41.8, 16}},
        {{"appPicker", "chevrons"}, {424, 161, 15, 15}},
        {{"refreshApps"}, {451, 155, 33, 27}},
        {{"refreshApps", "symbol"}, {461, 161, 13, 15}},
        {{"note"}, {36, 192, 366.4, 13}},
        {{"appGain"}, {36, 215, 448, 20}},
        {{"appGain", "slider"}, {124, 215, 292, 20}},
        {{"appGain", "track"}, {124, 223, 292, 4}},
        {{"appGain", "filled"}, {124, 223, 146, 4}},
        {{"appGain", "thumb"}, {261, 216, 18, 18}},
        {{"appGain", "readOut"}, {428, 217.5, 56, 15}},
        {{"microphoneCard"}, {22, 267, 476, 74}},
        {{"microphoneCard", "heading"}, {36, 281, 448, 16}},
        {{"microphoneCard", "headingIcon"}, {36, 281, 11, 16}},
        {{"microphoneCard", "headingText"}, {55, 282, 84, 14}},
        {{"micGain"}, {36, 307, 448, 20}},
        {{"micGain", "slider"}, {124, 307, 292, 20}},
        {{"micGain", "track"}, {124, 315, 292, 4}},
        {{"micGain", "filled"}, {124, 315, 146, 4}},
        {{"micGain", "thumb"}, {261, 308, 18, 18}},
        {{"micGain", "readOut"}, {428, 309.5, 56, 15}},
        {{"outputCard"}, {22, 359, 476, 104}},
        {{"outputCard", "heading"}, {36, 373, 448, 16}},
        {{"outputCard", "headingIcon"}, {36, 373, 20, 16}},
        {{"outputCard", "headingText"}, {64, 374, 145.7, 14}},
        {{"foundRow"}, {36, 399, 448, 27}},
        {{"foundRow", "dot"}, {36, 408, 9, 9}},
        {{"devicePicker"}, {55, 401, 386, 23}},
        {{"devicePicker", "text"}, {64, 404.5, 87.7, 16}},
        {{"devicePicker", "chevrons"}, {422, 405, 15, 15}},
        {{"refreshDevices"}, {451, 399, 33, 27}},
        {{"refreshDevices", "symbol"}, {461, 405, 13, 15}},
        {{"hint"}, {36, 436, 182.3, 13}},
        {{"controlRow"}, {22, 481, 476, 36}},
        {{"startButton"}, {22, 481, 136, 36}},
        {{"startButton", "label"}, {40, 491, 100, 16}},
        {{"bubble"}, {172, 486.5, 326, 25}},
        {{"bubble", "dot"}, {182, 495.5, 7, 7}},
        {{"close"}, {8, 8, 12, 12}},
        {{"minimise"}, {28, 8, 12, 12}},
        {{"zoom"}, {48, 8, 12, 12}},
    };
}

/// What "Start" and "Idle" take up.
std::vector<ExpectedBox> boxesOfStoppedWords()
{
    return {
        {{"startButton", "symbol"}, {64.3, 491, 12, 16}},
        {{"startButton", "text"}, {84.3, 491, 31.3, 16}},
        {{"bubble", "message"}, {197, 492.5, 17.1, 13}},
    };
}

std::vector<ExpectedBox> boxesOfNoDevice()
{
    return {
        {{"column"}, {0, 0, 520, 521}},
        {{"outputCard"}, {22, 359, 476, 86}},
        {{"missingRow"}, {36, 399, 448, 32}},
        {{"missingRow", "dot"}, {36, 410.5, 9, 9}},
        {{"controlRow"}, {22, 463, 476, 36}},
        {{"startButton"}, {22, 463, 136, 36}},
        {{"startButton", "text"}, {84.3, 473, 31.3, 16}},
        {{"bubble"}, {172, 468.5, 326, 25}},
    };
}

std::vector<ExpectedBox> boxesOfFailed()
{
    return {
        {{"column"}, {0, 0, 520, 541}},          {{"controlRow"}, {22, 481, 476, 38}},
        {{"startButton"}, {22, 482, 136, 36}},   {{"bubble"}, {172, 481, 326, 38}},
        {{"bubble", "dot"}, {182, 496.5, 7, 7}},
    };
}

std::vector<ExpectedBox> boxesOfLargeWindow()
{
    return {
        {{"column"}, {0, 80, 900, 539}},
        {{"sourceCard"}, {22, 195, 856, 134}},
        {{"appPicker"}, {36, 237, 787, 23}},
        {{"devicePicker"}, {55, 481, 766, 23}},
        {{"appGain", "slider"}, {124, 295, 672, 20}},
        {{"micGain", "slider"}, {124, 387, 672, 20}},
        {{"startButton"}, {22, 561, 136, 36}},
        {{"bubble"}, {172, 566.5, 706, 25}},
    };
}

std::vector<ExpectedColor> colorsOfReady()
{
    return {
        {{3, 3}, {10, 8, 26}},         {{516, 4}, {79, 39, 113}},   {{1, 524}, {35, 49, 84}},
        {{516, 534}, {12, 5, 30}},     {{260, 350}, {21, 17, 49}},  {{300, 137}, {52, 33, 78}},
        {{456, 162}, {78, 53, 104}},   {{34, 499}, {78, 191, 255}}, {{94, 485}, {12, 131, 254}},
        {{180, 225}, {100, 210, 255}}, {{180, 317}, {255, 55, 95}}, {{40, 412}, {48, 209, 88}},
    };
}

std::vector<ExpectedColor> colorsOfRunning()
{
    return {
        {{34, 499}, {239, 63, 130}}, {{94, 485}, {188, 90, 242}}, {{146, 499}, {50, 122, 252}},
        {{185, 499}, {48, 209, 88}}, {{490, 502}, {25, 18, 43}},
    };
}

} // namespace

std::vector<ExpectedBox> expectedBoxes(const QString &state)
{
    if (state == "no-device")
        return boxesOfNoDevice();
    if (state == "failed")
        return boxesOfFailed();
    if (state == "running-900x700")
        return boxesOfLargeWindow();
    std::vector<ExpectedBox> boxes = boxesOfReady();
    if (state == "ready")
        for (const ExpectedBox &box : boxesOfStoppedWords())
            boxes.push_back(box);
    return boxes;
}

std::vector<ExpectedColor> expectedColors(const QString &state)
{
    if (state == "ready")
        return colorsOfReady();
    if (state == "running")
        return colorsOfRunning();
    if (state == "no-device")
        return {{{40, 415}, {255, 159, 10}}, {{94, 467}, {21, 85, 164}}};
    if (state == "picker-open")
        return {{{300, 123}, {40, 35, 58}}, {{300, 169}, {10, 132, 255}}};
    return {};
}

} // namespace tolvenary::test
