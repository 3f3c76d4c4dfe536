-- Neovim opens a file with a mistake, shows the finding, applies the fix and saves. Run by
-- editors.test.js: nvim --headless --clean -u NONE FILE -c 'luafile neovim.lua'
local tool, rule, title = os.getenv('TARNLET'), os.getenv('RULE'), os.getenv('TITLE')

local function fail(text)
  io.stderr:write(text .. '\n')
  vim.cmd('cquit')
end

local function wait_for(what, condition)
  if not vim.wait(20000, condition, 50) then fail('no ' .. what) end
end

local client = vim.lsp.start_client({ name = 'tarnlet', cmd = { tool, 'lsp' } })
vim.lsp.buf_attach_client(0, client)
wait_for('finding', function() return #vim.diagnostic.get(0) > 0 end)
-- The library's messages come first, then those with a fix.
vim.lsp.get_client_by_id(client).request_sync('tarnlet/settled', {}, 20000, 0)
local finding = vim.diagnostic.get(0)[1]
local code = finding.code or finding.user_data.lsp.code
if code ~= rule then fail('found ' .. vim.inspect(finding)) end

-- The choice among the actions is the one with the title.
vim.ui.select = function(items, _, choose)
  for _, item in ipairs(items) do
    if item[2].title:find(title, 1, true) then return choose(item) end
  end
  fail('no action "' .. title .. '" in ' .. vim.inspect(items))
end
vim.api.nvim_win_set_cursor(0, { finding.lnum + 1, finding.col })
local tick = vim.api.nvim_buf_get_changedtick(0)
vim.lsp.buf.code_action()
wait_for('edit', function() return vim.api.nvim_buf_get_changedtick(0) ~= tick end)
vim.cmd('write')
wait_for('clean text', function() return #vim.diagnostic.get(0) == 0 end)
vim.cmd('qall!')
