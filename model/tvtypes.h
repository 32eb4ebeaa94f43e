// Texts and lamp codes for the small integer codes that the driver reports. Codes are signed 16-bit; a code
// without a text reads "XXXX". The texts are constants.
#pragma once

#include <cstdint>

extern const char textOfUnknown[];  // what a code without a text reads

const char* MtuTypeToString(std::int16_t code);    // maximum frame size class
const char* ElanTypeToString(std::int16_t code);   // the driver's ELAN type, counted from 1
const char* BusStateToString(std::int16_t code);   // entry of an LES client service table
const char* SaalStateToString(std::int16_t code);  // SSCOP state of the signalling AAL
const char* SigStateToString(std::int16_t code);   // UNI signalling
const char* IlmiStateToString(std::int16_t code);  // ILMI address registration
const char* LmacStateToString(std::int16_t code);  // entry of the Classical IP connection table

// Bytes of the largest frame of a class; 0: no class.
int MtuSize(std::int32_t mtuClass);

// States of services, with the flag that some come with; of one that is absent "no such client" or the like.
const char* LecStateToString(std::uint32_t code, bool flag);
const char* LesStateToString(std::uint32_t code, bool flag);
const char* LecsStateToString(std::uint32_t code);
const char* IpStateToString(std::uint32_t code);

// Codes of lamps. Off: not configured or disabled.
enum LampCode { lampOff = 0, lampTransition = 1, lampUp = 2 };

int IlmiStateToColor(std::int16_t code);
int SaalStateToColor(std::int16_t code);
int SigStateToColor(std::int16_t code);
