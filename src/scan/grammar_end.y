%%

static void bsdl_yyerror(const Place *place, Bsdl *bsdl, const char *text)
{
    // The generated parser calls this itself only when the stack cannot grow.
    (void)text;
    report_syntax_error(bsdl, *place, "parser stack overflow");
}

// Lists what the state would have taken: the entries of its own row, in the order of the tokens. A
// state with nothing but a default action lists nothing, and so does one with five or more.
static int yyreport_syntax_error(const yypcontext_t *context, Bsdl *bsdl)
{
    ExpectedTokens expected;
    expected.count = 0;
    int row = yypact[*context->yyssp];
    if (!yypact_value_is_default(row)) {
        for (int symbol = row < 0 ? -row : 0; symbol < YYNTOKENS && row + symbol <= YYLAST; symbol++)
            if (yycheck[row + symbol] == symbol && !yytable_value_is_error(yytable[row + symbol]))
                expected_token(&expected, yysymbol_name(static_cast<yysymbol_kind_t>(symbol)));
    }
    report_expected(bsdl, *yypcontext_location(context), &expected);
    return 0;
}

const char *token_name(int token)
{
    return yysymbol_name(YYTRANSLATE(token));
}
