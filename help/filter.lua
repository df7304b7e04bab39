-- Makes the Markdown of the pages into what the help needs: links between pages lead to HTML, and wide
-- tables scroll by themselves, in a region named after its heading.

local function link(element)
  if not element.target:match("^%a+:") then
    element.target = element.target:gsub("%.md$", ".html"):gsub("%.md#", ".html#")
  end
  return element
end

local function scrolling_tables(document)
  local word = pandoc.utils.stringify(document.meta.table or "Table")
  local heading, number = "", 0
  local blocks = pandoc.List()
  for _, block in ipairs(document.blocks) do
    if block.t == "Header" then
      heading, number = pandoc.utils.stringify(block), 0
    end
    if block.t == "Table" then
      number = number + 1
      local label = heading .. ", " .. word .. (number > 1 and " " .. number or "")
      label = label:gsub("&", "&amp;"):gsub('"', "&quot;")
      blocks:insert(pandoc.RawBlock("html",
        '<div class="wide" role="region" tabindex="0" aria-label="' .. label .. '">'))
      blocks:insert(block)
      blocks:insert(pandoc.RawBlock("html", "</div>"))
    else
      blocks:insert(block)
    end
  end
  document.blocks = blocks
  return document
end

return { { Link = link }, { Pandoc = scrolling_tables } }
