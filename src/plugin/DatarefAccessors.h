#pragma once

// The accessors of the plugin's own datarefs, with the SDK's signatures. Each forwards to
// the dataref provider of the plugin object; without one, getters return 0 and setters do nothing.

int GetInt(void* refcon);
void SetInt(void* refcon, int value);
float GetFloat(void* refcon);
void SetFloat(void* refcon, float value);
double GetDouble(void* refcon);
void SetDouble(void* refcon, double value);
int GetIntArray(void* refcon, int* values, int offset, int max);
void SetIntArray(void* refcon, int* values, int offset, int count);
int GetFloatArray(void* refcon, float* values, int offset, int max);
void SetFloatArray(void* refcon, float* values, int offset, int count);
int GetByteArray(void* refcon, void* values, int offset, int max);
void SetByteArray(void* refcon, void* values, int offset, int count);
