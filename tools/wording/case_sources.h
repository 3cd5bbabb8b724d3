// SPDX-License-Identifier: MIT
// The sources of the case files, for the report. Titles of publications stay as they are.
#pragma once

#include "tools/wording/catalogue.h"

namespace kalorfix::tool::wording {

inline constexpr Entry case_sources[] = {
    {"AGA8-92DC and VNIC SMV from their tables by a program of its own, the gas root by a scan of p(rho) with "
     "steps of 2e-4 of the critical density",
     "AGA8-92DC и ВНИЦ СМВ по их таблицам отдельной программой, газовый корень — просмотром p(rho) с шагом "
     "2e-4 критической плотности"},
    {"CRC Handbook of Chemistry and Physics, saturated liquid water (five digits)",
     "CRC Handbook of Chemistry and Physics, вода на линии насыщения (пять цифр)"},
    {"GERG-91 mod. evaluated by a program of its own; the column lowers the pressure by 9.80665 * 1000 * 400 "
     "Pa",
     "GERG-91 мод., вычислено отдельной программой; столб снижает давление на 9,80665 * 1000 * 400 Па"},
    {"GERG-91 mod., root of the cubic equation by Newton iteration; the column lowers the pressure by 9.80665 "
     "* 850 * 12 Pa",
     "GERG-91 мод., корень кубического уравнения итерациями Ньютона; столб снижает давление на 9,80665 * 850 * "
     "12 Па"},
    {"GOST 30319.1-96, formulas of viscosity and isentropic exponent evaluated by a program of its own",
     "ГОСТ 30319.1-96, формулы вязкости и показателя адиабаты, вычисленные отдельной программой"},
    {"GOST 30319.1-96, formulas of viscosity and isentropic exponent evaluated in double precision",
     "ГОСТ 30319.1-96, формулы вязкости и показателя адиабаты, вычисленные с двойной точностью"},
    {"GOST 30319.1-96, heats of combustion from the density; the selectors have no effect up to method 2, nor "
     "for negative ones",
     "ГОСТ 30319.1-96, теплота сгорания по плотности; до метода 2 и при отрицательных номерах выбор единиц не "
     "действует"},
    {"GOST 30319.1-96, summation with the table of the components, in double precision",
     "ГОСТ 30319.1-96, суммирование по таблице компонентов, с двойной точностью"},
    {"GOST 30319.1-96, summation with the table of the components, in double precision by a program of its own",
     "ГОСТ 30319.1-96, суммирование по таблице компонентов, с двойной точностью отдельной программой"},
    {"GOST 30319.1-96, table of the heats of combustion", "ГОСТ 30319.1-96, таблица теплоты сгорания"},
    {"GOST 30319.1-96, table of the heats of combustion transcribed a second time; sums in rational numbers",
     "ГОСТ 30319.1-96, таблица теплоты сгорания, записанная второй раз; суммы в рациональных числах"},
    {"GOST 30319.1-96, viscosity and isentropic exponent from the density evaluated by a program of its own",
     "ГОСТ 30319.1-96, вязкость и показатель адиабаты по плотности, вычисленные отдельной программой"},
    {"GOST 30319.1-96: equal volumes of methane and another component, by the compressibility factors of the "
     "components; a program of its own",
     "ГОСТ 30319.1-96: равные объёмы метана и другого компонента, по факторам сжимаемости компонентов; "
     "отдельная программа"},
    {"GOST 30319.2-96 and 30319.3-96, formulas of VNIC SMV evaluated in double precision",
     "ГОСТ 30319.2-96 и 30319.3-96, формулы ВНИЦ СМВ, вычисленные с двойной точностью"},
    {"GOST 30319.2-96 and 30319.3-96, formulas of VNIC SMV, and 30319.1-96, density, evaluated by a program of "
     "its own",
     "ГОСТ 30319.2-96 и 30319.3-96, формулы ВНИЦ СМВ, и 30319.1-96, плотность, вычисленные отдельной "
     "программой"},
    {"GOST 30319.2-96, formulas of NX19 mod. (method 0) and GERG-91 mod. (1) evaluated by a program of its own",
     "ГОСТ 30319.2-96, формулы NX19 мод. (метод 0) и GERG-91 мод. (1), вычисленные отдельной программой"},
    {"GOST 30319.2-96, formulas of NX19 mod. (method 0) and GERG-91 mod. (1) evaluated in double precision",
     "ГОСТ 30319.2-96, формулы NX19 мод. (метод 0) и GERG-91 мод. (1), вычисленные с двойной точностью"},
    {"GOST 30319.2-96, formulas of NX19 mod. evaluated in double precision by a program of its own",
     "ГОСТ 30319.2-96, формулы NX19 мод., вычисленные с двойной точностью отдельной программой"},
    {"GOST 30319.2-96, formulas of VNIC SMV evaluated in double precision by a program of its own",
     "ГОСТ 30319.2-96, формулы ВНИЦ СМВ, вычисленные с двойной точностью отдельной программой"},
    {"GOST 30319.2-96, worked example of NX19 mod.", "ГОСТ 30319.2-96, пример расчёта по NX19 мод."},
    {"GOST 8.586.1, annex G: temperature range of a material, inclusive; the fraction of a code is dropped",
     "ГОСТ 8.586.1, приложение Г: диапазон температур материала, концы включены; дробная часть кода "
     "отбрасывается"},
    {"GOST 8.586.1-2005, annex G, table G.1 transcribed a second time, 5.5, evaluated in Python with rational "
     "numbers",
     "ГОСТ 8.586.1-2005, приложение Г, таблица Г.1, записанная второй раз, 5.5, вычислено на Python в "
     "рациональных числах"},
    {"GOST 8.586.1-2005, annex G: each of the two materials has its own range",
     "ГОСТ 8.586.1-2005, приложение Г: у каждого из двух материалов свой диапазон"},
    {"GOST 8.586.2-2005, 5.3.2.4, by hand: 0.9826 + (r/d + 0.0007773)^0.6 from r = 0.0004 d on; r is the "
     "radius at the end of the interval",
     "ГОСТ 8.586.2-2005, 5.3.2.4, вручную: 0,9826 + (r/d + 0,0007773)^0,6 начиная с r = 0,0004 d; r — радиус в "
     "конце интервала"},
    {"GOST 8.586.3-2005, 5.2.6.1: roughness of the pipe before a long-radius nozzle, R_a/D up to 0.00032",
     "ГОСТ 8.586.3-2005, 5.2.6.1: шероховатость трубопровода перед эллипсным соплом, R_a/D до 0,00032"},
    {"GOST 8.586.4: coefficients of Venturi tubes on both sides of their steps",
     "ГОСТ 8.586.4: коэффициенты труб Вентури по обе стороны их ступеней"},
    {"IAPS Formulation 1985 for the viscosity, revised release, table of check values (four digits)",
     "IAPS Formulation 1985 для вязкости, пересмотренный выпуск, таблица контрольных значений (четыре цифры)"},
    {"IAPS Formulation 1985 with its critical enhancement, evaluated in Python; density and dp/drho by "
     "python3-iapws 1.5.2 (IAPWS95)",
     "IAPS Formulation 1985 с критической поправкой, вычислено на Python; плотность и dp/drho по python3-iapws "
     "1.5.2 (IAPWS95)"},
    {"IAPWS R6-95(2018), table 7; density from the printed pressure, isentropic exponent w^2 rho / p",
     "IAPWS R6-95(2018), таблица 7; плотность по напечатанному давлению, показатель адиабаты w^2 rho / p"},
    {"IAPWS R6-95(2018), table 8: saturation at 450 K, 0.932203564 MPa",
     "IAPWS R6-95(2018), таблица 8: насыщение при 450 К, 0,932203564 МПа"},
    {"IAPWS SR1-86(1992) and the explicit saturation temperature, evaluated with 30 digits (mpmath)",
     "IAPWS SR1-86(1992) и явная температура насыщения, вычислено с 30 цифрами (mpmath)"},
    {"IAPWS SR1-86(1992) evaluated with 30 digits (mpmath)",
     "IAPWS SR1-86(1992), вычислено с 30 цифрами (mpmath)"},
    {"IAPWS SR1-86(1992), check value: 0.101325e6 Pa at 373.1243 K",
     "IAPWS SR1-86(1992), контрольное значение: 0,101325e6 Па при 373,1243 К"},
    {"IAPWS-95 evaluated with 30 digits (mpmath), with the n2 of 1995 and the eight digits of p_c / (rho_c R "
     "T_c)",
     "IAPWS-95, вычислено с 30 цифрами (mpmath), с n2 1995 года и восемью цифрами p_c / (rho_c R T_c)"},
    {"ISO 5167-1:2022, annex E.1, worked example, as quoted in the tests of pvtlib",
     "ISO 5167-1:2022, приложение E.1, пример расчёта, как приведён в тестах pvtlib"},
    {"ISO 5167-2:2003, annex A (discharge coefficients), as quoted in the tests of pvtlib and fluids",
     "ISO 5167-2:2003, приложение A (коэффициенты истечения), как приведено в тестах pvtlib и fluids"},
    {"ISO 5167-2:2022, table A.12, as quoted in the tests of pvtlib",
     "ISO 5167-2:2022, таблица A.12, как приведена в тестах pvtlib"},
    {"ISO 5167-3:2003, table A.1, as quoted in the tests of pvtlib and fluids",
     "ISO 5167-3:2003, таблица A.1, как приведена в тестах pvtlib и fluids"},
    {"ISO 5167-3:2003, table A.2, as quoted in the tests of pvtlib and fluids",
     "ISO 5167-3:2003, таблица A.2, как приведена в тестах pvtlib и fluids"},
    {"ISO 5167-3:2003, table A.3, as quoted in the tests of pvtlib and fluids",
     "ISO 5167-3:2003, таблица A.3, как приведена в тестах pvtlib и fluids"},
    {"ISO 5167-4, machined Venturi tube, C = 0.995: solved by hand, from C = 1 at the first Re = 10^6 the "
     "second pass finds C and the third the same",
     "ISO 5167-4, обработанная труба Вентури, C = 0,995: решено вручную, от C = 1 при первом Re = 10^6 второй "
     "проход находит C, третий то же"},
    {"ISO 5167-4:2003, table A.1, as quoted in the tests of pvtlib and fluids",
     "ISO 5167-4:2003, таблица A.1, как приведена в тестах pvtlib и fluids"},
    {"NX19 mod. evaluated by a program of its own, at the ends of density and contents that are accepted",
     "NX19 мод., вычислено отдельной программой, на концах принимаемых плотности и содержаний"},
    {"Z: AGA Report No. 8 (2017), DETAIL table in SI units, Amarillo; K: evaluated in double precision with "
     "the doubled cross term",
     "Z: AGA Report No. 8 (2017), таблица DETAIL в единицах СИ, Amarillo; K: вычислен с двойной точностью с "
     "удвоенным перекрёстным членом"},
    {"Z: AGA Report No. 8 (2017), DETAIL table in SI units, High CO2-N2; K: evaluated in double precision with "
     "the doubled cross term",
     "Z: AGA Report No. 8 (2017), таблица DETAIL в единицах СИ, High CO2-N2; K: вычислен с двойной точностью с "
     "удвоенным перекрёстным членом"},
    {"Z: ISO 12213-2:2006 annex C, gas 1; K: evaluated in double precision with the doubled cross term",
     "Z: ISO 12213-2:2006, приложение C, газ 1; K: вычислен с двойной точностью с удвоенным перекрёстным "
     "членом"},
    {"Z: ISO 12213-2:2006 annex C, gas 5; K: evaluated in double precision with the doubled cross term",
     "Z: ISO 12213-2:2006, приложение C, газ 5; K: вычислен с двойной точностью с удвоенным перекрёстным "
     "членом"},
    {"a column alone, -9.80665 * 1 * -1e5 Pa, gives the pressure; near the critical point, from above 645 K "
     "on, there is steam only",
     "давление даёт один столб, -9,80665 * 1 * -1e5 Па; у критической точки, выше 645 К, есть только пар"},
    {"computed with fluids 1.1.0, recorded in the tests of pvtlib",
     "вычислено пакетом fluids 1.1.0, записано в тестах pvtlib"},
    {"computed with fluids 1.3.1 for random devices inside the limits",
     "вычислено пакетом fluids 1.3.1 для случайных устройств внутри пределов"},
    {"differential pressures without a limit, and those without a flow",
     "перепады давления без предела и перепады, при которых нет расхода"},
    {"dry gas under its partial pressure and the vapour's own mass; vapour density of IAPWS-95 at 537.0892 K, "
     "25.35054 kg/m3",
     "сухой газ при его парциальном давлении и масса самого пара; плотность пара по IAPWS-95 при 537,0892 К, "
     "25,35054 кг/м³"},
    {"equation of state of AGA Report No. 8 with the doubled cross term, evaluated in double precision by a "
     "program of its own",
     "уравнение состояния AGA Report No. 8 с удвоенным перекрёстным членом, вычисленное с двойной точностью "
     "отдельной программой"},
    {"independent transcription of the equations of GOST 8.586 in Python, double precision",
     "независимая запись уравнений ГОСТ 8.586 на Python, двойная точность"},
    {"independent transcription of the equations of GOST 8.586 in Python, double precision; limits of the "
     "Reynolds number",
     "независимая запись уравнений ГОСТ 8.586 на Python, двойная точность; пределы числа Рейнольдса"},
    {"least Reynolds number of averaging devices", "наименьшее число Рейнольдса осредняющих устройств"},
    {"limit of the pressure ratio, dp/p at most 0.25: GOST 8.586.2-2005, 8.586.3-2005, 8.586.4-2005",
     "предел отношения давлений, dp/p не более 0,25: ГОСТ 8.586.2-2005, 8.586.3-2005, 8.586.4-2005"},
    {"limits of diameters at working temperature: GOST 8.586.2-2005, 5.3.1; 8.586.3-2005, 5.1.6.1, 5.2.6.1, "
     "5.3.4.1; 8.586.4-2005, 5.5.2 to 5.5.4",
     "пределы диаметров при рабочей температуре: ГОСТ 8.586.2-2005, 5.3.1; 8.586.3-2005, 5.1.6.1, 5.2.6.1, "
     "5.3.4.1; 8.586.4-2005, 5.5.2 — 5.5.4"},
    {"limits of the Reynolds number: GOST 8.586.2-2005, 5.3.1; 8.586.3-2005, 5.1.6.1, 5.2.6.1, 5.3.4.1; "
     "8.586.4-2005, 5.5.2 to 5.5.4",
     "пределы числа Рейнольдса: ГОСТ 8.586.2-2005, 5.3.1; 8.586.3-2005, 5.1.6.1, 5.2.6.1, 5.3.4.1; "
     "8.586.4-2005, 5.5.2 — 5.5.4"},
    {"limits of the diameter ratio and of the sharp edge", "пределы относительного диаметра и острой кромки"},
    {"limits of the diameter ratio, the same clauses", "пределы относительного диаметра, те же пункты"},
    {"limits of the pipeline constants", "пределы условно-постоянных параметров"},
    {"limits of the pipeline constants: material codes, GOST 8.586.1-2005, annex G",
     "пределы условно-постоянных параметров: коды материалов, ГОСТ 8.586.1-2005, приложение Г"},
    {"limits of the state: 70 < T < 1500 K, 0 < p < 100 MPa, 0 <= dp < p/4",
     "пределы состояния: 70 < T < 1500 К, 0 < p < 100 МПа, 0 <= dp < p/4"},
    {"limits of the state; rules of the channel functions", "пределы состояния; правила функций каналов"},
    {"limits of use of GOST 8.586.2, 8.586.3 and 8.586.4: diameter ratio, exactly on the limits",
     "пределы применения по ГОСТ 8.586.2, 8.586.3 и 8.586.4: относительный диаметр, точно на пределах"},
    {"limits of use of GOST 8.586.2, 8.586.3 and 8.586.4: diameters at working temperature, exactly on the "
     "limits",
     "пределы применения по ГОСТ 8.586.2, 8.586.3 и 8.586.4: диаметры при рабочей температуре, точно на "
     "пределах"},
    {"limits that hold in a range of diameters or of their ratio: GOST 8.586.2, 5.3.1 and 8.586.3, 5.1.6",
     "пределы, действующие в части диаметров или их отношений: ГОСТ 8.586.2, 5.3.1 и 8.586.3, 5.1.6"},
    {"metering class of a calculator: 0 or 1; 3 was never set up",
     "класс измерений вычислителя: 0 или 1; 3 — не был настроен"},
    {"meters, external flow and the selector of the calculation",
     "счётчики, внешний расход и выбор вычисления"},
    {"methods by composition: 0..100 mol %, or shares 0..1", "методы по составу: 0..100 мол. % или доли 0..1"},
    {"methods by density: density 0..1 kg/m3, contents not negative",
     "методы по плотности: плотность 0..1 кг/м³, содержания не отрицательны"},
    {"p_at_rho: NIST test data of AGA8 DETAIL, binary mixtures; K: evaluated in double precision with the "
     "doubled cross term",
     "p_at_rho: контрольные данные NIST к AGA8 DETAIL, двойные смеси; K: вычислен с двойной точностью с "
     "удвоенным перекрёстным членом"},
    {"p_at_rho: NIST test data of AGA8 DETAIL, carbon dioxide with ethane; K: evaluated in double precision "
     "with the doubled cross term",
     "p_at_rho: контрольные данные NIST к AGA8 DETAIL, диоксид углерода с этаном; K: вычислен с двойной "
     "точностью с удвоенным перекрёстным членом"},
    {"p_at_rho: NIST test data of AGA8 DETAIL, half hydrogen sulphide; K: evaluated in double precision with "
     "the doubled cross term",
     "p_at_rho: контрольные данные NIST к AGA8 DETAIL, наполовину сероводород; K: вычислен с двойной точностью "
     "с удвоенным перекрёстным членом"},
    {"p_at_rho: NIST test data of AGA8 DETAIL, natural gases; K: evaluated in double precision with the "
     "doubled cross term",
     "p_at_rho: контрольные данные NIST к AGA8 DETAIL, природные газы; K: вычислен с двойной точностью с "
     "удвоенным перекрёстным членом"},
    {"python3-iapws 1.5.2 (IAPWS95) at 1 Pa: enthalpy and cp0 / cv0 of the ideal gas",
     "python3-iapws 1.5.2 (IAPWS95) при 1 Па: энтальпия и cp0 / cv0 идеального газа"},
    {"python3-iapws 1.5.2 (IAPWS95): water at 0.47616 MPa, saturated vapour, both at 150 degC",
     "python3-iapws 1.5.2 (IAPWS95): вода при 0,47616 МПа и сухой насыщенный пар, оба при 150 °C"},
    {"python3-iapws 1.5.2, class IAPWS95", "python3-iapws 1.5.2, класс IAPWS95"},
    {"range of the phase: 0..800 degC, 0.001..100 MPa", "диапазон фазы: 0..800 °C, 0,001..100 МПа"},
    {"range of the properties, inclusive; refusals give four zeros",
     "диапазон свойств, концы включены; при отказе четыре нуля"},
    {"range of the properties: 0..800 degC, 0..100 MPa, inclusive; saturated vapour up to 371.85 degC",
     "диапазон свойств: 0..800 °C, 0..100 МПа, концы включены; сухой насыщенный пар до 371,85 °C"},
    {"range of the state, 273.15..1273.15 K and 0.001..100 MPa after the column; refusals write zeros",
     "диапазон состояния, 273,15..1273,15 К и 0,001..100 МПа после столба; при отказе пишутся нули"},
    {"range of the state: 0..1000 degC, 0.001..100 MPa after the column; of the properties: 0..800 degC",
     "диапазон состояния: 0..1000 °C, 0,001..100 МПа после столба; свойств: 0..800 °C"},
    {"results recorded in the tests of fluids", "результаты, записанные в тестах пакета fluids"},
    {"roughness of the pipe: GOST 8.586.2-2005, 5.3.1 (K_sh up to 1.03 for corner tappings in pipes over 1 m); "
     "8.586.3-2005, 5.1.6.1, 5.3.4.1 (R_sh/D up to 0.003)",
     "шероховатость трубопровода: ГОСТ 8.586.2-2005, 5.3.1 (K_sh до 1,03 при угловом отборе в трубопроводах "
     "больше 1 м); 8.586.3-2005, 5.1.6.1, 5.3.4.1 (R_sh/D до 0,003)"},
    {"rule that a result which is no number is no result",
     "правило: результат, который не является числом, — не результат"},
    {"rules of the methods by composition", "правила методов по составу"},
    {"rules of the methods by density", "правила методов по плотности"},
    {"rules of the solution: no flow without a valid state, nor above dp/p = 0.25",
     "правила решения: нет расхода без действительного состояния и при dp/p выше 0,25"},
    {"the selector: 0 is NX19 mod., 1 is GERG-91 mod.; both evaluated by a program of its own",
     "выбор метода: 0 — NX19 мод., 1 — GERG-91 мод.; оба вычислены отдельной программой"},
    {"the selector: 2 is AGA8-92DC, all but 0..2 is VNIC SMV",
     "выбор метода: 2 — AGA8-92DC, всё, кроме 0..2, — ВНИЦ СМВ"},
    {"tolerance in temperature: at 20 degC the band of pressure alone holds far more than the band of "
     "temperature",
     "допуск по температуре: при 20 °C полоса давления сама вмещает намного больше, чем полоса температуры"},
    {"volume fractions become mole fractions by the compressibility factors of the components, calculated by "
     "hand: 0.9/0.9981 and 0.1/0.9920 over their sum",
     "объёмные доли переводятся в молярные по факторам сжимаемости компонентов, вычислено вручную: 0,9/0,9981 "
     "и 0,1/0,9920 к их сумме"},
    {"water vapour: its saturation temperature at most 645 K",
     "водяной пар: его температура насыщения не выше 645 К"},
    {"wet steam: share 0..1; selector of the phase 0 or 1; phase asked for 1..3",
     "влажный пар: доля 0..1; выбор фазы 0 или 1; запрошенная фаза 1..3"},
    {"window of the state: 250..340 K and 0.001..30 MPa, ends excluded; method by density",
     "область состояния: 250..340 К и 0,001..30 МПа без концов; метод по плотности"},
};

}  // namespace kalorfix::tool::wording
