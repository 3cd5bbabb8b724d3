// SPDX-License-Identifier: MIT
// The notes of the case files, and the words of their inputs and results, for the report.
#pragma once

#include "tools/wording/catalogue.h"

namespace kalorfix::tool::wording {

inline constexpr Entry case_notes[] = {
    {"the printed tables are not always rounded correctly, hence 1.1e-4",
     "напечатанные таблицы не везде верно округлены, отсюда 1,1e-4"},
    {"Re formed from the recorded mass flow", "Re получено из записанного массового расхода"},
    {"the most that 0.265 in place of 0.256 makes is 6.1e-4; with half a unit of the last digit that is the "
     "declared bound",
     "наибольшее действие 0,265 вместо 0,256 — 6,1e-4; вместе с половиной единицы последней цифры это "
     "объявленная граница"},
    {"orifice plates: the coefficient of beta^4 is 0.265 here, 0.256 in the source",
     "диафрагмы: коэффициент при beta^4 здесь 0,265, в источнике 0,256"},
    {"the source's value is lowered by 0.009 beta^4 (1 - (1 - dp/p)^(1/kappa))",
     "значение источника уменьшено на 0,009 beta^4 (1 - (1 - dp/p)^(1/kappa))"},
    {"orifice plates: the source's flow is lowered as epsilon is by the coefficient 0.265 of beta^4",
     "диафрагмы: расход источника уменьшен, как epsilon, из-за коэффициента 0,265 при beta^4"},
    {"the source prints the pressure at a molar density; p_MPa is that pressure, to compare K there too",
     "источник печатает давление при молярной плотности; p_MPa — это давление, чтобы сравнить там и K"},
    {"printed to eight digits; composition, temperature, pressure and K pass in single precision, which "
     "carries seven",
     "напечатано восемь цифр; состав, температура, давление и K передаются с одинарной точностью, где их семь"},
    {"hexane with heptane is close to its dew point, which magnifies the single precision of the tables",
     "гексан с гептаном близок к точке росы, что усиливает одинарную точность таблиц"},
    {"mixtures of four components, in which every pair occurs, and dense pure gases: a number of the tables "
     "that changes shows",
     "смеси четырёх компонентов, в которых есть каждая пара, и плотные чистые газы: изменённое число таблиц "
     "проявляется"},
    {"mixtures of four components, in which every pair occurs, and pure gases: a number of the tables that "
     "changes shows",
     "смеси четырёх компонентов, в которых есть каждая пара, и чистые газы: изменённое число таблиц "
     "проявляется"},
    {"tables, c_kl and what is handed out in single precision, all else in double; dense states: kappa sums in "
     "single precision, not compared",
     "таблицы, c_kl и выдаваемое — с одинарной точностью, остальное — с двойной; плотные состояния: kappa "
     "суммируется с одинарной точностью и не сравнивается"},
    {"mixtures with octanes, in which the small summation factors of nitrogen and carbon monoxide weigh most",
     "смеси с октанами, в которых малые множители суммирования азота и оксида углерода значат больше всего"},
    {"dense pairs in which the correction of the critical temperature weighs; twice the effect of a last place "
     "of the temperature is permitted",
     "плотные пары, в которых значима поправка критической температуры; допускается двойное действие "
     "последнего разряда температуры"},
    {"the example takes Zc from the same equation, which lowers K by 3e-5",
     "пример берёт Zc из того же уравнения, что снижает K на 3e-5"},
    {"single precision of the inputs and of K leaves 1e-6", "одинарная точность входов и K оставляет 1e-6"},
    {"mixtures and states, most of them beyond those that the methods are meant for, in which each number of "
     "the formulas shows",
     "смеси и состояния, большей частью вне тех, для которых методы предназначены; в них проявляется каждое "
     "число формул"},
    {"adjusted temperatures 9e-5 above 1.09, where two ranges of the correction begin",
     "приведённые температуры на 9e-5 выше 1,09, где начинаются две области поправки"},
    {"where the smallest numbers of the correction weigh most; permitted is little more than half a unit of "
     "the last place of K",
     "там, где самые малые числа поправки значат больше всего; допускается немногим больше половины единицы "
     "последнего разряда K"},
    {"results that were not written read -1; without a valid state the properties hand out the values kept, 0 "
     "in a new calculator",
     "незаписанные результаты читаются как -1; без действительного состояния свойства выдают хранимые "
     "значения, в новом вычислителе 0"},
    {"contents and density out of range leave K at 0; a NaN is never within limits",
     "при содержаниях и плотности вне диапазона K остаётся 0; «не число» (NaN) никогда не в пределах"},
    {"thin_gas by the formulas of NX19 mod. in double precision",
     "thin_gas — по формулам NX19 мод. с двойной точностью"},
    {"a value out of range writes nothing; a NaN passes the ranges and fails in the method",
     "при значении вне диапазона ничего не пишется; «не число» (NaN) проходит диапазоны и не проходит в "
     "методе"},
    {"K of a failed method is 0", "K не сошедшегося метода равен 0"},
    {"K from the formulas in double precision (AGA8-92DC) and from an independent transcription in Python "
     "(VNIC SMV)",
     "K по формулам с двойной точностью (AGA8-92DC) и по независимой записи на Python (ВНИЦ СМВ)"},
    {"the mole fractions are 0.899446913 and 0.100553087", "молярные доли — 0,899446913 и 0,100553087"},
    {"the sums take the values as mole per cent", "суммы берут значения как молярные проценты"},
    {"above 645 K there is no saturated vapour: nothing is handed out",
     "выше 645 К сухого насыщенного пара нет: ничего не выдаётся"},
    {"a content that is not above 0 is dry gas; an undefined one is refused, and one whose vapour would be "
     "more than the gas",
     "содержание не больше 0 — сухой газ; неопределённое и такое, при котором пара было бы больше, чем газа, "
     "получает отказ"},
    {"3 % below and 5 % above the first maximum of the isotherm, or where it has none; tables, coefficients "
     "and inputs in single precision",
     "на 3 % ниже и на 5 % выше первого максимума изотермы или там, где его нет; таблицы, коэффициенты и входы "
     "— с одинарной точностью"},
    {"near the maximum a rounding of the inputs grows in K; permitted is what one unit of their last place "
     "does",
     "у максимума округление входов в K растёт; допускается действие одной единицы их последнего разряда"},
    {"decision of the phase by the saturation line; tolerances 1000 Pa and 1 K",
     "выбор фазы по линии насыщения; допуски 1000 Па и 1 К"},
    {"wet steam: shares, selectors; the saturation pressure becomes the working pressure",
     "влажный пар: доли, выбор; давление насыщения становится рабочим давлением"},
    {"the auxiliary saturation pressure lies 1.2e-5 below that of the equation of state, and so does the "
     "vapour's density",
     "вспомогательное давление насыщения на 1,2e-5 ниже давления по уравнению состояния, так же и плотность "
     "пара"},
    {"vacuum: the ideal-gas limits", "вакуум: пределы идеального газа"},
    {"order of the decision: range, critical neighbourhood, 100 degC, saturation line",
     "порядок выбора: диапазон, окрестность критической точки, 100 °C, линия насыщения"},
    {"the density near the critical point, 50 to 140 times as sensitive as the pressure, sets what is "
     "permitted",
     "допуск задаёт плотность у критической точки, в 50–140 раз более чувствительная, чем давление"},
    {"the fraction of a code is dropped", "дробная часть кода отбрасывается"},
    {"5e-6 to either side of 0.1, 0.75 (orifice plates), 0.3, 0.8 (ISA 1932), 0.2, 0.8 (long radius)",
     "5e-6 в обе стороны от 0,1, 0,75 (диафрагмы), 0,3, 0,8 (сопло ИСА 1932), 0,2, 0,8 (эллипсное сопло)"},
    {"0.316, 0.775 (Venturi nozzle), 0.3, 0.75 (cast), 0.4, 0.75 (machined), 0.4, 0.7 (welded)",
     "0,316, 0,775 (сопло Вентури), 0,3, 0,75 (литая), 0,4, 0,75 (обработанная), 0,4, 0,7 (сварная)"},
    {"R_a is R_sh / pi", "R_a равно R_sh / pi"},
    {"temperature range of each material, inclusive; pipe and device of the same material, their diameters at "
     "its highest temperature",
     "диапазон температур каждого материала, концы включены; трубопровод и устройство из одного материала, их "
     "диаметры — при его высшей температуре"},
    {"1e-9 to either side", "1e-9 в обе стороны"},
    {"the viscosity puts the Reynolds number 1e-6 to either side",
     "вязкость смещает число Рейнольдса на 1e-6 в обе стороны"},
    {"at low pressure K of 0.9999 is exceeded before 0.001 MPa is reached",
     "при низком давлении K превышает 0,9999 раньше, чем достигнуто 0,001 МПа"},
    {"1000 degC is a valid state whose properties are refused",
     "1000 °C — действительное состояние, свойства которого получают отказ"},
    {"from 21.5 MPa on everything counts as steam", "с 21,5 МПа всё считается паром"},
    {"helium by AGA8-92DC", "гелий по AGA8-92DC"},
    {"a refused set-up leaves a channel that refuses everything after it",
     "после отказа в настройке канал отказывает во всём дальнейшем"},
    {"diameters of a refused size are handed out; the ratio is then not computed",
     "диаметры недопустимого размера выдаются; относительный диаметр тогда не вычисляется"},
    {"a refused ratio is handed out", "недопустимый относительный диаметр выдаётся"},
    {"exactly on the limits", "точно на пределах"},
    {"the ratios of nozzles beyond those of use: K_sh does not come to 1.03 within them",
     "относительные диаметры сопел вне области применения: внутри неё K_sh не доходит до 1,03"},
    {"roughness correction; the sets of coefficients change at 1e4, 1e5, 3e6 and 1e8",
     "поправка на шероховатость; наборы коэффициентов сменяются при 1e4, 1e5, 3e6 и 1e8"},
    {"edge bluntness of orifice plates: water 0.19 mm, steam 0.2 mm",
     "притупление кромки диафрагм: вода 0,19 мм, пар 0,2 мм"},
    {"edge bluntness of orifice plates: gas 0.195 mm", "притупление кромки диафрагм: газ 0,195 мм"},
    {"averaging devices; status by the least Reynolds number; 19 with a configured coefficient; a refused flow "
     "hands out kg/s",
     "осредняющие устройства; статус по наименьшему числу Рейнольдса; 19 — с заданным коэффициентом; при "
     "отказе расход выдаётся в кг/с"},
    {"roughness next to the limits of a smooth pipe; each digit of the tables of these limits decides about a "
     "case",
     "шероховатость рядом с пределами гладкого трубопровода; каждая цифра таблиц этих пределов решает исход "
     "какого-то случая"},
    {"next to the limits of the formulas; ratios beyond those of the devices are refused by the geometry only",
     "рядом с пределами формул; относительные диаметры вне пределов устройств отвергает только геометрия"},
    {"class 0 is solved to 1e-3", "класс 0 решается до 1e-3"},
    {"only corner tappings and the ISA 1932 nozzle limit the correction; next to a rounding of the lower bound",
     "поправку ограничивают только угловой отбор и сопло ИСА 1932; рядом с округлением нижней границы"},
    {"a map of the density; its solver sets the permitted deviation",
     "карта плотности; допускаемое отклонение задаёт её решение"},
    {"permitted is what half a unit of the last digits of p, rho and w leaves, and 2e-9 of the density",
     "допускается то, что оставляет половина единицы последних цифр p, rho и w, и 2e-9 плотности"},
    {"near the critical point more, for the eight digits of the constant p_c / (rho_c R T_c)",
     "у критической точки больше, из-за восьми цифр постоянной p_c / (rho_c R T_c)"},
    {"the pressure of the auxiliary saturation equation differs by 4e-7 from that of the equation of state",
     "давление вспомогательного уравнения насыщения отличается на 4e-7 от давления по уравнению состояния"},
    {"the edition of 2018 lies 2.4e-7 kJ/kg higher; with all digits of the constant the density is 2e-9 higher",
     "по редакции 2018 года выше на 2,4e-7 кДж/кг; со всеми цифрами постоянной плотность выше на 2e-9"},
    {"at the saturation pressure, rounded up so that the state is liquid",
     "при давлении насыщения, округлённом вверх, чтобы состояние было жидким"},
    {"enthalpies lie 2.4e-7 kJ/kg apart by the constant of the ideal part in use",
     "энтальпии отличаются на 2,4e-7 кДж/кг из-за применяемой постоянной идеальной части"},
};

inline constexpr Entry case_words[] = {
    {"status", "статус"},
    {"state", "состояние"},
    {"geometry", "геометрия"},
    {"set_up", "настройка"},
    {"phase", "фаза"},
    {"phase_used", "принятая фаза"},
    {"device", "устройство"},
    {"method", "метод"},
    {"computed", "вычислено"},
    {"refused", "отказ"},
    {"undecided", "не определена"},
    {"water", "вода"},
    {"steam", "пар"},
    {"wet", "влажный пар"},
    {"orifice, corner", "диафрагма, угловой отбор"},
    {"orifice, D and D/2", "диафрагма, трёхрадиусный отбор"},
    {"orifice, flange", "диафрагма, фланцевый отбор"},
    {"ISA 1932 nozzle", "сопло ИСА 1932"},
    {"long-radius nozzle", "эллипсное сопло"},
    {"Venturi nozzle", "сопло Вентури"},
    {"Venturi tube, cast", "труба Вентури, литая"},
    {"Venturi tube, machined", "труба Вентури, обработанная"},
    {"Venturi tube, welded", "труба Вентури, сварная"},
};

}  // namespace kalorfix::tool::wording
