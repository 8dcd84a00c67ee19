#pragma once

class EditMainWindow;

/// Writes a page that someone would print, a travel note in Chinese and English with bold text, several sizes, a
/// small bill and a photograph, into an empty editor.
void composeSamplePage(EditMainWindow& page);
