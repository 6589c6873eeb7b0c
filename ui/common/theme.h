#pragma once

#include <QColor>
#include <QEvent>
#include <QFont>
#include <QPalette>
#include <QWidget>

namespace tarnwick {

/// What a text is for; sizes are relative to the user's own font.
enum class FontRole { largeTitle, title2, title3, headline, body, callout, caption, mono };

/// What a colour is for.
enum class ColorRole {
  primary,      ///< text
  secondary,    ///< text that explains
  accent,       ///< fill of the prominent button and of progress
  onAccent,     ///< text on accent
  card,         ///< fill of a card, the "control background"
  cardEdge,     ///< the hairline around a card
  track,        ///< the part of a bar that is not filled
  warningFill,  ///< fill of a card that tells an error
  orange,
  green,
  red,
  grey,
  link,
};

/// The font of a role, from the application's present font.
[[nodiscard]] QFont fontFor(FontRole role);

/// The colour of a role in a palette. Colours that text is drawn in have a contrast of at least 4.5
/// to cards and windows of that palette.
[[nodiscard]] QColor colorFor(ColorRole role, const QPalette& palette);

/// Lets the outlines of fields and check boxes in `area` stand out. Their style makes them from the
/// window's colour, which in dark themes nobody sees. To be called again when the palette changes.
void outlineControls(QWidget& area);

/// Windows of the palette are darker than their text.
[[nodiscard]] bool isDark(const QPalette& palette);

/// The ratio of luminances from 1 (the same) to 21 (black and white).
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// The event tells of new fonts or colours, so that what was derived from them is out of date.
[[nodiscard]] bool changesTheme(const QEvent& event);

}  // namespace tarnwick
