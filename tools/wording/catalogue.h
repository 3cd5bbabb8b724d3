// Every text of the protocol and of the verification report, in English and Russian.
#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>

namespace kalorfix::tool::wording {

struct Entry {
    std::string_view english, russian;
};

inline constexpr Entry catalogue[] = {
    // ---- Units ----
    {"degC", "°C"},
    {"1/degC", "1/°C"},
    {"K", "К"},
    {"Pa", "Па"},
    {"kPa", "кПа"},
    {"MPa", "МПа"},
    {"mm", "мм"},
    {"m", "м"},
    {"years", "лет"},
    {"kg/m3", "кг/м³"},
    {"kmol/m3", "кмоль/м³"},
    {"kJ/kg", "кДж/кг"},
    {"uPa s", "мкПа·с"},
    {"Pa s", "Па·с"},
    {"kg/s", "кг/с"},
    {"t/h", "т/ч"},
    {"m3/h", "м³/ч"},
    {"GJ/h", "ГДж/ч"},
    {"1/h", "1/ч"},
    {"mol %", "мол. %"},
    {"%", "%"},

    // ---- Devices and components ----
    {"orifice plate, corner tappings", "диафрагма с угловым отбором давления"},
    {"orifice plate, D and D/2 tappings", "диафрагма с трёхрадиусным отбором давления"},
    {"orifice plate, flange tappings", "диафрагма с фланцевым отбором давления"},
    {"ISA 1932 nozzle", "сопло ИСА 1932"},
    {"long-radius nozzle", "эллипсное сопло"},
    {"Venturi nozzle", "сопло Вентури"},
    {"Venturi tube, as-cast convergent", "труба Вентури с литой входной частью"},
    {"Venturi tube, machined convergent", "труба Вентури с обработанной входной частью"},
    {"Venturi tube, rough-welded convergent", "труба Вентури со сварной входной частью"},
    {"averaging device 10", "осредняющее устройство 10"},
    {"averaging device 11", "осредняющее устройство 11"},
    {"averaging device 12", "осредняющее устройство 12"},
    {"averaging device 13", "осредняющее устройство 13"},
    {"averaging device 14", "осредняющее устройство 14"},
    {"averaging device 15", "осредняющее устройство 15"},
    {"averaging device 16", "осредняющее устройство 16"},
    {"averaging device 17", "осредняющее устройство 17"},
    {"averaging device 18", "осредняющее устройство 18"},
    {"device of a given flow coefficient", "устройство с заданным коэффициентом расхода"},
    {"mass meter", "счётчик массы"},
    {"volume meter", "счётчик объёма"},
    {"meter of standard volume", "счётчик стандартного объёма"},
    {"flows from elsewhere", "внешние расходы"},
    {"methane", "метан"},
    {"ethane", "этан"},
    {"propane", "пропан"},
    {"n-butane", "н-бутан"},
    {"i-butane", "и-бутан"},
    {"n-pentane", "н-пентан"},
    {"i-pentane", "и-пентан"},
    {"hexanes", "гексаны"},
    {"heptanes", "гептаны"},
    {"octanes", "октаны"},
    {"nitrogen", "азот"},
    {"carbon_dioxide", "диоксид углерода"},
    {"hydrogen_sulphide", "сероводород"},
    {"helium", "гелий"},
    {"carbon_monoxide", "оксид углерода"},

    // ---- Protocol: head ----
    {"Protocol No.", "Протокол №"},
    {"Check of the computations of a flow computer", "проверки вычислений вычислителя расхода"},
    {"Object", "Объект"},
    {"Device", "Прибор"},
    {"Serial number", "Заводской номер"},
    {"Software, version", "Программа, версия"},
    {"Software, checksum", "Программа, контрольная сумма"},
    {"Date", "Дата"},
    {"Reference", "Эталон вычислений"},
    {"kalorfix {}, independent of the device", "kalorfix {}, независимо от прибора"},
    {"Library, SHA-256", "Библиотека, SHA-256"},
    {"Gas data, SHA-256", "Данные о газе, SHA-256"},
    {"Station file", "Файл узла учёта"},
    {"Station file, SHA-256", "Файл узла учёта, SHA-256"},
    {"Metering point", "Точка учёта"},
    {"pipe {} mm, device {} mm at 20 degC", "трубопровод {} мм, устройство {} мм при 20 °C"},
    {"natural gas, {}", "природный газ, {}"},
    {"water and steam, IAPWS-95", "вода и водяной пар, IAPWS-95"},
    {"density at 20 degC and 101.325 kPa: {} kg/m3", "плотность при 20 °C и 101,325 кПа: {} кг/м³"},

    // ---- Protocol: tables ----
    {"Points and reference results", "Точки и результаты эталона"},
    {"Results of the device", "Результаты прибора"},
    {"No.", "№"},
    {"temperature", "температура"},
    {"absolute pressure", "абсолютное давление"},
    {"differential pressure", "перепад давления"},
    {"density", "плотность"},
    {"mass flow", "массовый расход"},
    {"volume flow", "объёмный расход"},
    {"standard volume flow", "расход при станд. усл."},
    {"energy flow", "расход энергии"},
    {"heat flow", "расход теплоты"},
    {"compressibility coefficient", "коэффициент сжимаемости"},
    {"deviation, %", "отклонение, %"},
    {"reference", "эталон"},
    {"device", "прибор"},
    {"verdict", "вывод"},
    {"met", "соотв."},
    {"NOT MET", "НЕ СООТВ."},
    {"no value", "нет значения"},
    {"refused by the reference", "отказ эталона"},
    {"Absolute pressure is that of the transmitter. Standard volume: at 20 degC and 101.325 kPa.",
     "Абсолютное давление — по показаниям датчика. Стандартные условия: 20 °C и 101,325 кПа."},
    {"Deviation: device less reference, in per cent of the reference; permitted: ±{} %.",
     "Отклонение: прибор минус эталон, в процентах эталона; допускается ±{} %."},
    {"No results of a device are compared here: columns to fill in by hand.",
     "Результаты прибора здесь не сравниваются: графы заполняются от руки."},
    {"MET: {} values of {} points lie within ±{} %; the largest deviation is {} %.",
     "СООТВЕТСТВУЕТ: значений {} в точках {} — в пределах ±{} %; наибольшее отклонение {} %."},
    {"NOT MET: {} of {} values lie outside ±{} %; the largest deviation is {} %.",
     "НЕ СООТВЕТСТВУЕТ: вне пределов значений {} из {} (±{} %); наибольшее отклонение {} %."},
    {"NOT COMPLETE: {} values are missing or could not be compared; of the others {} of {} lie within ±{} %.",
     "НЕПОЛНО: нет значений или нет сравнения: {}; из остальных соответствуют {} из {} (±{} %)."},
    {"Limit, points and head are the inspector's; no document is on record here that prescribes them.",
     "Предел, точки и сведения о приборе задал проверяющий; документа, который их предписывает, здесь нет."},
    {"Conclusion", "Заключение"},
    {"Checked by", "Проверил"},
    {"Representative of the object", "Представитель объекта"},
    {"position", "должность"},
    {"name", "фамилия, инициалы"},
    {"signature", "подпись"},
    {"date", "дата"},
};

inline constexpr std::size_t none = static_cast<std::size_t>(-1);

/// Where a text stands; none when it does not.
[[nodiscard]] constexpr std::size_t place_of(std::string_view english) {
    for (std::size_t k = 0; k < std::size(catalogue); ++k)
        if (catalogue[k].english == english) return k;
    return none;
}

}  // namespace kalorfix::tool::wording
